// Fields have no range for their caret: a hidden copy with the field's
// font and box, holding the text up to the caret, tells where it stands.
(() => {
  if (window !== window.top) return;
  const send = __BINDING__;
  const plain = /^(button|checkbox|color|file|hidden|image|radio|range|reset|submit)$/;
  const copied = ['boxSizing', 'width', 'borderTopWidth', 'borderRightWidth',
      'borderBottomWidth', 'borderLeftWidth', 'borderStyle', 'paddingTop',
      'paddingRight', 'paddingBottom', 'paddingLeft', 'fontStyle', 'fontVariant',
      'fontWeight', 'fontStretch', 'fontSize', 'lineHeight', 'fontFamily',
      'textAlign', 'textTransform', 'textIndent', 'letterSpacing', 'wordSpacing',
      'tabSize'];
  let last = '', pending = false;
  const fieldCaret = (el) => {
    const style = getComputedStyle(el);
    const copy = document.createElement('div');
    for (const name of copied) copy.style[name] = style[name];
    const single = el.tagName === 'INPUT';
    Object.assign(copy.style, {position: 'absolute', visibility: 'hidden', top: '0',
        left: '0', overflow: 'hidden', whiteSpace: single ? 'pre' : 'pre-wrap',
        overflowWrap: single ? 'normal' : 'break-word'});
    const at = el.selectionDirection === 'backward' ? el.selectionStart : el.selectionEnd;
    copy.textContent = el.value.substring(0, at);
    const mark = document.createElement('span');
    mark.textContent = '\u200b';
    copy.appendChild(mark);
    document.documentElement.appendChild(copy);
    const left = mark.offsetLeft, top = mark.offsetTop, height = mark.offsetHeight;
    copy.remove();
    const box = el.getBoundingClientRect();
    const y = single ? box.top + (box.height - height) / 2 : box.top + top - el.scrollTop;
    return {x: box.left + left - el.scrollLeft, y, width: 1, height,
            start: el.selectionStart, end: el.selectionEnd};
  };
  const editableCaret = (el) => {
    const selection = getSelection();
    if (!selection.rangeCount) return null;
    const range = selection.getRangeAt(0).cloneRange();
    range.collapse(selection.focusNode === range.startContainer &&
                   selection.focusOffset === range.startOffset);
    let rect = range.getClientRects()[0];
    if (!rect) {
      const node = range.startContainer.nodeType === Node.ELEMENT_NODE
          ? range.startContainer : range.startContainer.parentElement;
      const box = node.getBoundingClientRect();
      const style = getComputedStyle(node);
      rect = {left: box.left + parseFloat(style.paddingLeft || 0),
              top: box.top + parseFloat(style.paddingTop || 0),
              height: parseFloat(style.lineHeight) || parseFloat(style.fontSize) * 1.2};
    }
    const pre = document.createRange();
    pre.selectNodeContents(el);
    pre.setEnd(range.startContainer, range.startOffset);
    const start = pre.toString().length;
    return {x: rect.left, y: rect.top, width: 1, height: rect.height, start,
            end: start + String(selection).length};
  };
  const measure = () => {
    pending = false;
    let el = document.activeElement;
    while (el && el.shadowRoot && el.shadowRoot.activeElement) el = el.shadowRoot.activeElement;
    if (!el) return;
    let caret = null;
    if (el.tagName === 'TEXTAREA' || (el.tagName === 'INPUT' && !plain.test(el.type)))
      caret = fieldCaret(el);
    else if (el.isContentEditable)
      caret = editableCaret(el);
    if (!caret) return;
    const text = JSON.stringify(caret);
    if (text !== last) { last = text; send(text); }
  };
  const later = () => {
    if (!pending) { pending = true; setTimeout(measure, 0); }
  };
  for (const type of ['focusin', 'selectionchange', 'input', 'keyup', 'mouseup',
                      'compositionstart', 'compositionupdate', 'compositionend'])
    document.addEventListener(type, later, {capture: true, passive: true});
  addEventListener('scroll', later, {capture: true, passive: true});
  addEventListener('resize', later, {passive: true});
})();
