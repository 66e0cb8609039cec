// What a person should know about the page itself, above the results until it is put away.
(function (report) {
    'use strict';

    const { element, button } = report.dom;

    function show(text) {
        const host = document.getElementById('notices');
        const notice = element(
            'p',
            { class: 'notice' },
            element('span', null, text),
            button('×', () => notice.remove(), { 'class': 'close', 'aria-label': 'Put away' }),
        );
        host.append(notice);
    }

    function clear() {
        document.getElementById('notices').replaceChildren();
    }

    report.notice = { show, clear };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
