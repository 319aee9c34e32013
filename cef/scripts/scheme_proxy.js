// The page's own fetch and XMLHttpRequest stay reachable through the
// wrappers; only URLs of the listed schemes are changed.
(() => {
  const schemes = new Set(__SCHEMES__);
  const standIn = (url) => {
    let parsed;
    try { parsed = new URL(String(url), document.baseURI); } catch (e) { return null; }
    return schemes.has(parsed.protocol.slice(0, -1))
        ? __STAND_IN__ + encodeURIComponent(parsed.href) : null;
  };
  const pageFetch = window.fetch;
  window.fetch = function(input, init) {
    const isRequest = input instanceof Request;
    const target = standIn(isRequest ? input.url : input);
    if (target) input = isRequest ? new Request(target, input) : target;
    return pageFetch.call(this, input, init);
  };
  const pageOpen = XMLHttpRequest.prototype.open;
  XMLHttpRequest.prototype.open = function(method, url, ...rest) {
    return pageOpen.call(this, method, standIn(url) || url, ...rest);
  };
})();
