document.body ? document.body.innerText : ''
