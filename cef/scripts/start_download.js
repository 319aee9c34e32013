([url]) => {
  const link = document.createElement('a');
  link.href = url;
  link.download = '';
  link.style.display = 'none';
  document.documentElement.appendChild(link);
  link.click();
  link.remove();
}
