// What a person should know about the page itself, above the results until it is dismissed.
(function (report) {
    'use strict';

    const { element, button } = report.dom;

    /// `about` groups notices, so that they can be cleared together.
    function show(about, text) {
        const notice = element(
            'p',
            { 'class': 'notice', 'data-about': about },
            element('span', null, text),
            button('×', () => notice.remove(), { 'class': 'close', 'aria-label': 'Dismiss' }),
        );
        document.getElementById('notices').append(notice);
    }

    function clear(about) {
        for (const notice of document.querySelectorAll('#notices [data-about="' + about + '"]'))
            notice.remove();
    }

    report.notice = { show, clear };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
