(clearSelection) => {
  window.__find = null;
  if (clearSelection) getSelection().removeAllRanges();
}
