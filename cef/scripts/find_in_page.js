// The active match lives in the world's own global, so that quick successive
// calls stay in order.
(text, matchCase, forward, findNext) => {
  const norm = s => matchCase ? s : s.toLowerCase();
  const needle = norm(text);
  const matches = [];
  const root = document.body || document.documentElement;
  if (needle && root) {
    const walker = document.createTreeWalker(root, NodeFilter.SHOW_TEXT, {
      acceptNode: n => n.parentElement &&
          !/^(SCRIPT|STYLE|NOSCRIPT|TEMPLATE)$/.test(n.parentElement.tagName)
          ? NodeFilter.FILTER_ACCEPT : NodeFilter.FILTER_REJECT});
    for (let n; (n = walker.nextNode());) {
      const hay = norm(n.data);
      for (let i = hay.indexOf(needle); i >= 0;
           i = hay.indexOf(needle, i + needle.length)) {
        matches.push([n, i]);
      }
    }
  }
  const last = window.__find;
  const same = last && last.text === text && last.matchCase === matchCase;
  const count = matches.length;
  if (!count) {
    window.__find = {text, matchCase, active: -1};
    return {count: 0, active: 0};
  }
  let active = forward ? 0 : count - 1;
  if (findNext && same && last.active >= 0) {
    active = ((last.active + (forward ? 1 : -1)) % count + count) % count;
  }
  window.__find = {text, matchCase, active};
  const [node, at] = matches[active];
  const range = document.createRange();
  range.setStart(node, Math.min(at, node.length));
  range.setEnd(node, Math.min(at + text.length, node.length));
  const selection = getSelection();
  selection.removeAllRanges();
  selection.addRange(range);
  node.parentElement.scrollIntoView({block: 'nearest', inline: 'nearest'});
  const r = range.getBoundingClientRect();
  return {count, active: active + 1, x: r.left, y: r.top, width: r.width,
          height: r.height};
}
