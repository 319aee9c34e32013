// Reports the cursor on every pointer move that changes it, and a title's
// tooltip after Chromium's usual delay; an empty tooltip when the pointer
// leaves it. "auto" is resolved as Chromium does: the hand over links, the
// I-beam over fields and text. Images come along as data URLs, so that the
// engine never fetches on its own.
(() => {
  const send = __BINDING__;
  const fields = /^(button|checkbox|color|file|hidden|image|radio|range|reset|submit)$/;
  const tipDelayMs = 500;
  let lastCursor = null, lastTip = '', shownTip = '', tipTimer = 0;
  const images = new Map();
  const overText = (x, y) => {
    let node = null;
    if (document.caretPositionFromPoint) {
      const p = document.caretPositionFromPoint(x, y);
      node = p && p.offsetNode;
    } else if (document.caretRangeFromPoint) {
      const r = document.caretRangeFromPoint(x, y);
      node = r && r.startContainer;
    }
    if (!node || node.nodeType !== Node.TEXT_NODE || !node.data.trim()) return false;
    const range = document.createRange();
    range.selectNodeContents(node);
    for (const b of range.getClientRects())
      if (x >= b.left && x < b.right && y >= b.top && y < b.bottom) return true;
    return false;
  };
  const autoCursor = (el, x, y) => {
    for (let e = el; e; e = e.parentElement)
      if ((e.tagName === 'A' || e.tagName === 'AREA') && e.hasAttribute('href')) return 'pointer';
    if (el && (el.isContentEditable || el.tagName === 'TEXTAREA' ||
               (el.tagName === 'INPUT' && !fields.test(el.type)))) return 'text';
    return overText(x, y) ? 'text' : 'default';
  };
  const report = (css, image) => {
    const key = css + '|' + image;
    if (key === lastCursor) return;
    lastCursor = key;
    send(JSON.stringify({cursor: css, image}));
  };
  const cursorAt = (el, x, y) => {
    let css = getComputedStyle(el).cursor;
    if (css === 'auto' || css.endsWith(', auto'))
      css = css.slice(0, css.length - 4) + autoCursor(el, x, y);
    const url = /url\("((?:[^"\\]|\\.)*)"\)/.exec(css);
    if (!url) return report(css, '');
    const src = url[1].replace(/\\(.)/g, '$1');
    if (src.startsWith('data:')) return report(css, src);
    if (images.has(src)) return report(css, images.get(src));
    report(css, '');
    fetch(src).then(r => r.ok ? r.blob() : Promise.reject()).then(blob => {
      const reader = new FileReader();
      reader.onload = () => {
        images.set(src, reader.result);
        if (lastCursor && lastCursor.startsWith(css + '|')) report(css, reader.result);
      };
      reader.readAsDataURL(blob);
    }).catch(() => images.set(src, ''));
  };
  const tipOf = (el) => {
    for (let e = el; e; e = e.parentElement || (e.getRootNode() && e.getRootNode().host)) {
      if (e.nodeType === Node.ELEMENT_NODE && e.hasAttribute('title'))
        return e.getAttribute('title');
    }
    return '';
  };
  const showTip = (text) => {
    clearTimeout(tipTimer);
    if (text === lastTip) return;
    lastTip = text;
    if (shownTip) { shownTip = ''; send(JSON.stringify({tooltip: ''})); }
    if (text) tipTimer = setTimeout(() => {
      shownTip = text;
      send(JSON.stringify({tooltip: text}));
    }, tipDelayMs);
  };
  document.addEventListener('mousemove', (event) => {
    const path = event.composedPath();
    const el = path.length && path[0].nodeType === Node.ELEMENT_NODE ? path[0] : event.target;
    if (!el || el.nodeType !== Node.ELEMENT_NODE) return;
    cursorAt(el, event.clientX, event.clientY);
    showTip(tipOf(el));
  }, {capture: true, passive: true});
  document.addEventListener('mouseout', (event) => {
    if (!event.relatedTarget) showTip('');
  }, {capture: true, passive: true});
  document.addEventListener('mousedown', () => {
    clearTimeout(tipTimer);
    if (shownTip) { shownTip = ''; send(JSON.stringify({tooltip: ''})); }
  }, {capture: true, passive: true});
})();
