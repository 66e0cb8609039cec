// The border between list and details, which can be moved by mouse and by arrow keys.
(function (report) {
    'use strict';

    const storageKey = 'morvex-report-list-width';

    // A browser may forbid storage to a page opened from a file.
    function stored() {
        try {
            return Number(localStorage.getItem(storageKey)) || 0;
        } catch {
            return 0;
        }
    }

    function store(percent) {
        try {
            localStorage.setItem(storageKey, String(percent));
        } catch {
            return;
        }
    }

    function install(splitter, main) {
        function set(percent) {
            const width = Math.round(Math.min(80, Math.max(20, percent)));
            main.style.setProperty('--list', width + '%');
            splitter.setAttribute('aria-valuenow', String(width));
            store(width);
        }
        function follow(event) {
            const box = main.getBoundingClientRect();
            set(((event.clientX - box.left) / box.width) * 100);
        }
        splitter.addEventListener('pointerdown', (event) => {
            event.preventDefault();
            splitter.setPointerCapture(event.pointerId);
            splitter.addEventListener('pointermove', follow);
        });
        splitter.addEventListener('pointerup', () =>
            splitter.removeEventListener('pointermove', follow),
        );
        splitter.addEventListener('pointercancel', () =>
            splitter.removeEventListener('pointermove', follow),
        );
        splitter.addEventListener('keydown', (event) => {
            const now = Number(splitter.getAttribute('aria-valuenow'));
            const width = { ArrowLeft: now - 3, ArrowRight: now + 3, Home: 20, End: 80 }[event.key];
            if (width === undefined) return;
            event.preventDefault();
            set(width);
        });
        set(stored() || 46);
    }

    report.splitter = { install };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
