// What the other runs in the data file know about a test.
(function (report) {
    'use strict';

    /// `{run, node}` for each run of the suite that the test is in, oldest first; `node` is
    /// undefined where the test did not run.
    function historyOf(shown, node) {
        const part = report.shown.partOf(shown, node);
        if (!part) return [];
        const key = report.shown.keyIn(part, node);
        return part.source.suite.runs.map((run) => ({ run, node: run.test(key) }));
    }

    report.historyOf = historyOf;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
