(document.doctype ? new XMLSerializer().serializeToString(document.doctype) + '\n' : '') +
    (document.documentElement ? document.documentElement.outerHTML : '')
