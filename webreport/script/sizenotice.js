// Says when a report grows towards what browsers can open.
(function (report) {
    'use strict';

    const megabyte = 1 << 20;
    const near = 0.7 * report.noData.mostMegabytes * megabyte;

    // After the page was drawn.
    const pause = 3000;
    const samples = 3;

    function loadedSize() {
        const [entry] = performance
            .getEntriesByType('resource')
            .filter(({ name }) => name.endsWith('/data/results-v1.js'));
        return entry ? entry.decodedBodySize : 0;
    }

    /// The file has six characters for each above 0x7f.
    function escapedLength(text) {
        let length = text.length;
        for (let at = 0; at < text.length; ++at) if (text.charCodeAt(at) > 0x7f) length += 5;
        return length;
    }

    /// Of a page opened from a file the browser gives no sizes.
    function estimatedSize(runs) {
        const step = Math.ceil(runs.length / samples);
        const some = runs.filter((run, at) => at % step === 0);
        const size = some.reduce((sum, run) => sum + escapedLength(JSON.stringify(run)), 0);
        return (size * runs.length) / some.length;
    }

    function sizeOf(runs) {
        try {
            return loadedSize() || estimatedSize(runs);
        } catch {
            // Nested deeper than the browser's stack.
            return 0;
        }
    }

    function showIfNear(runs) {
        const size = sizeOf(runs);
        if (size < near) return;
        const { count } = report.format;
        report.notice.show(
            'size',
            `The data has about ${count(Math.round(size / megabyte))} MB, and browsers open no ` +
                `more than about ${report.noData.mostMegabytes} MB. --keep-runs N removes the ` +
                'oldest runs of each suite.',
        );
    }

    report.sizeNotice = { showLater: (runs) => setTimeout(() => showIfNear(runs), pause) };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
