// Why a test failed: its failure, and what came before it.
(function (report) {
    'use strict';

    const { isFailed } = report.model;
    const mostBefore = 5;
    const mostBeforeCrash = 8;
    const mostWarnings = 3;

    /// The last attempt that failed of a test case that was retried; any other test itself.
    function failedAttempt(node) {
        if (node.kind !== 'attempts') return node;
        return node.children.findLast(isFailed) || node;
    }

    function isCrash({ raw }) {
        return raw.result === 'FATAL';
    }

    /// The test case or attempt that an entry is in; the run outside of them.
    function attemptOf(entry) {
        let node = entry.parent;
        while (node.parent && !node.attempt && node !== node.testCase) node = node.parent;
        return node;
    }

    /// What was logged before a failure in the same attempt, in the order of reading and whatever
    /// section it is in: the entries just before it, and warnings from further up.
    function before(run, failure) {
        const most = isCrash(failure) ? mostBeforeCrash : mostBefore;
        const isBefore = (one) => one.id < failure.id;
        const entries = report.model.entriesWithin(run, attemptOf(failure), isBefore);
        const warnings = entries.slice(0, -most).filter((one) => one.entryKind === 'warning');
        return [...warnings.slice(-mostWarnings), ...entries.slice(-most)];
    }

    /// The next of the test cases, or causes, that failed; round the end. `groups` has the test
    /// cases of each cause, or each test case by itself.
    function nextGroup(groups, current, by) {
        const at = groups.findIndex((group) => group.includes(current));
        if (groups.length === 0) return null;
        const from = at < 0 ? (by > 0 ? -1 : 0) : at;
        return groups[(from + by + groups.length) % groups.length][0];
    }

    report.why = { failedAttempt, isCrash, before, nextGroup };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
