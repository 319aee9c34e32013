// Reports each focus change of the document, and whether the new node takes
// text.
(() => {
  if (window !== window.top) return;
  const takesText = (node) => {
    if (!node) return false;
    if (node.isContentEditable) return true;
    if (node.tagName === 'TEXTAREA') return !node.readOnly && !node.disabled;
    if (node.tagName !== 'INPUT') return false;
    const kinds = ['text', 'search', 'url', 'tel', 'email', 'password', 'number',
                   'date', 'datetime-local', 'month', 'time', 'week'];
    return kinds.includes((node.type || 'text').toLowerCase()) && !node.readOnly && !node.disabled;
  };
  let last = null;
  const report = () => {
    const editable = takesText(document.activeElement);
    if (editable !== last) { last = editable; __BINDING__(editable ? '1' : '0'); }
  };
  document.addEventListener('focusin', report, true);
  document.addEventListener('focusout', () => setTimeout(report, 0), true);
})();
