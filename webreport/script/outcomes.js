// The one table of what results and tests can come to: its order is the order of the filters.
(function (report) {
    'use strict';

    /// Kinds of entries. `results` are the values of "result" that count as this kind; an
    /// attachment has none.
    const entryKinds = [
        {
            key: 'fail',
            results: ['FAIL'],
            label: 'Failure',
            plural: 'Failures',
            icon: 'fail',
            failed: true,
        },
        {
            key: 'error',
            results: ['ERROR', 'FATAL'],
            label: 'Error',
            plural: 'Errors',
            icon: 'error',
            failed: true,
        },
        {
            key: 'xpass',
            results: ['XPASS'],
            label: 'Unexpected pass',
            plural: 'Unexpected passes',
            icon: 'xpass',
            failed: true,
        },
        {
            key: 'warning',
            results: ['WARNING'],
            label: 'Warning',
            plural: 'Warnings',
            icon: 'warning',
        },
        {
            key: 'xfail',
            results: ['XFAIL'],
            label: 'Expected failure',
            plural: 'Expected failures',
            icon: 'xfail',
        },
        { key: 'pass', results: ['PASS'], label: 'Pass', plural: 'Passes', icon: 'pass' },
        { key: 'log', results: ['LOG'], label: 'Message', plural: 'Messages', icon: 'log' },
        {
            key: 'attachment',
            results: [],
            label: 'Attachment',
            plural: 'Attachments',
            icon: 'attachment',
        },
    ];

    /// Outcomes of a test, the worst first.
    const testOutcomes = [
        { key: 'error', label: 'Error', many: 'Errors', icon: 'error', failed: true },
        { key: 'failed', label: 'Failed', icon: 'fail', failed: true },
        { key: 'unfinished', label: 'Unfinished', icon: 'unfinished', failed: true },
        { key: 'flaky', label: 'Flaky', icon: 'flaky' },
        { key: 'passed', label: 'Passed', icon: 'pass' },
        { key: 'skipped', label: 'Skipped', icon: 'skipped' },
    ];

    /// Marks beside the outcome, by which test cases can be filtered too.
    const changes = [
        { key: 'new', label: 'Newly failing', icon: 'new' },
        { key: 'fixed', label: 'Fixed', icon: 'fixed' },
        { key: 'added', label: 'New test case', plural: 'New test cases', icon: 'added' },
    ];

    /// A suite that ran none of its test cases: no success, and nothing went wrong.
    const nothingRan = { key: 'empty', label: 'Nothing ran', icon: 'skipped' };

    const kindOfResult = new Map();
    for (const kind of entryKinds) {
        for (const result of kind.results) kindOfResult.set(result, kind.key);
    }

    function byKey(table) {
        return new Map(table.map((row) => [row.key, row]));
    }

    report.outcomes = {
        entryKinds,
        testOutcomes,
        changes,
        testFilters: [...testOutcomes, ...changes],
        entryKind: byKey(entryKinds),
        testOutcome: byKey([...testOutcomes, ...changes, nothingRan]),
        /// The kind for a value of "result"; an unknown one is shown as a message.
        kindOfResult: (result) => kindOfResult.get(result) || 'log',
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
