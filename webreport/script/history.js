// What the other runs in the data file know about a test.
(function (report) {
    'use strict';

    const { isFailed } = report.model;

    /// A run of another suite may hold test cases of the same names.
    function isSameSuite(run, other) {
        return run.name === other.name && run.root.raw.type === other.root.raw.type;
    }

    /// `{run, node}` for each run of the same suite, oldest first; `node` is undefined where the
    /// test did not run.
    function historyOf(runs, run, key) {
        return runs
            .filter((other) => isSameSuite(run, other))
            .map((other) => ({ run: other, node: other.byKey.get(key) }));
    }

    /// The test in the latest earlier run that really ran it.
    function previousOf(runs, run, key) {
        for (let index = run.index - 1; index >= 0; --index) {
            const node = isSameSuite(run, runs[index]) && runs[index].byKey.get(key);
            if (node && node.outcome !== 'skipped' && node.outcome !== 'unfinished') return node;
        }
        return null;
    }

    /// Sets `isNew` on the test cases that fail now and did not fail before.
    function markNewlyFailing(runs, run) {
        for (const testCase of run.testCases) {
            const failed = isFailed(testCase) && testCase.outcome !== 'unfinished';
            const previous = failed ? previousOf(runs, run, testCase.key) : null;
            testCase.isNew = Boolean(previous) && !isFailed(previous);
        }
    }

    report.history = { historyOf, markNewlyFailing };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
