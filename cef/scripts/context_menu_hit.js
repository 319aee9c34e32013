// What lies under the point (CSS pixels): link, media, selection, field.
(x, y) => {
  const el = document.elementFromPoint(x, y);
  const hit = {pageUrl: location.href, frameUrl: location.href,
               charset: document.characterSet, link: '', src: '', title: '',
               media: 0, editable: false, canUndo: false, canRedo: false,
               selection: String(getSelection())};
  for (let e = el; e && !hit.link; e = e.parentElement) {
    if ((e.tagName === 'A' || e.tagName === 'AREA') && e.href) hit.link = e.href;
  }
  if (el) {
    const media = {IMG: 1, VIDEO: 2, AUDIO: 3, CANVAS: 4}[el.tagName] || 0;
    if (media) {
      hit.media = media;
      hit.src = el.currentSrc || el.src || '';
      hit.title = el.title || el.alt || '';
    }
    const field = el.tagName === 'TEXTAREA' || (el.tagName === 'INPUT' &&
        !/^(button|checkbox|color|file|hidden|image|radio|range|reset|submit)$/
            .test(el.type));
    if ((field && !el.readOnly && !el.disabled) || el.isContentEditable) {
      hit.editable = true;
      if (field) {
        try {
          hit.selection = el.value.substring(el.selectionStart,
                                             el.selectionEnd);
        } catch (e) {}
      }
      hit.canUndo = document.queryCommandEnabled('undo');
      hit.canRedo = document.queryCommandEnabled('redo');
    }
  }
  return hit;
}
