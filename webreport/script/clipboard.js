// Puts text on the clipboard, and says so.
(function (report) {
    'use strict';

    const { element } = report.dom;
    let timer = 0;

    function toast(text) {
        const place = document.getElementById('toast');
        place.textContent = text;
        place.classList.add('shown');
        clearTimeout(timer);
        timer = setTimeout(() => place.classList.remove('shown'), 2200);
    }

    /// For pages served without TLS, where browsers offer no clipboard to scripts.
    function copyBySelection(text) {
        const area = element('textarea', { 'class': 'offscreen', 'aria-hidden': 'true' });
        area.value = text;
        const focused = document.activeElement;
        document.body.append(area);
        area.select();
        const done = document.execCommand('copy');
        area.remove();
        if (focused) focused.focus();
        return done;
    }

    async function copy(text, what) {
        let done = false;
        try {
            await navigator.clipboard.writeText(text);
            done = true;
        } catch {
            done = copyBySelection(text);
        }
        toast(done ? what + ' copied' : 'The browser did not allow copying');
    }

    report.clipboard = { copy, toast };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
