(() => {
  if (window !== window.top) return;
  let last = null;
  const report = () => {
    const title = document.title;
    if (title !== last) { last = title; __BINDING__(title); }
  };
  new MutationObserver(report).observe(document,
      {subtree: true, childList: true, characterData: true});
})();
