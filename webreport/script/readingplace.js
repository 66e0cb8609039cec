// How far the details are scrolled, or will be when pictures have made them long enough.
(function (report) {
    'use strict';

    /// `host` scrolls what is in it. The result takes its part where a place is noted.
    function readingPlace(host) {
        let wanted = 0;
        const forget = () => (wanted = 0);
        const scrollOn = () => {
            if (wanted > host.scrollTop) host.scrollTop = wanted;
        };
        for (const event of ['wheel', 'touchmove', 'pointerdown', 'keydown'])
            window.addEventListener(event, forget, { capture: true, passive: true });
        const observer = new ResizeObserver(scrollOn);
        for (const part of host.children) observer.observe(part);
        return {
            get scrollTop() {
                return Math.max(wanted, host.scrollTop);
            },
            set scrollTop(top) {
                wanted = top;
                host.scrollTop = top;
            },
            addEventListener: (...listener) => host.addEventListener(...listener),
        };
    }

    report.readingPlace = readingPlace;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
