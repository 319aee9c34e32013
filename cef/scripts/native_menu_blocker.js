// A full Chromium would open its own context menu over the page; the
// engine's goes to the client instead. Whether the page itself cancelled the
// event is kept for the menu's watcher, which runs after the dispatch.
addEventListener('contextmenu', (event) => {
  event.broviaPagePrevented = event.defaultPrevented;
  event.preventDefault();
});
