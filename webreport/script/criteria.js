// How the filters of a page change: `{text, tests, entries, slowest}`, as filter.js reads them.
(function (report) {
    'use strict';

    const failedKinds = report.outcomes.entryKinds.filter((kind) => kind.failed);

    function clear(criteria) {
        Object.assign(criteria, { text: '', tests: new Map(), entries: new Map() });
    }

    /// `mode` is 'only', 'not' or undefined for no filter.
    function setMode(modes, key, mode) {
        if (mode) modes.set(key, mode);
        else modes.delete(key);
    }

    function showsOnlyTests(criteria, key) {
        return criteria.tests.size === 1 && criteria.tests.get(key) === 'only';
    }

    /// Only test cases of this outcome, or no filter by outcome when that is so already.
    function toggleOnlyTests(criteria, key) {
        criteria.tests = new Map(showsOnlyTests(criteria, key) ? [] : [[key, 'only']]);
    }

    function showsFailuresOnly(criteria) {
        return failedKinds.every((kind) => criteria.entries.get(kind.key) === 'only');
    }

    function toggleFailures(criteria) {
        criteria.entries = new Map(
            showsFailuresOnly(criteria) ? [] : failedKinds.map((kind) => [kind.key, 'only']),
        );
    }

    report.criteria = {
        clear,
        setMode,
        showsOnlyTests,
        toggleOnlyTests,
        showsFailuresOnly,
        toggleFailures,
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
