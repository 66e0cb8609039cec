// What a person wants to know first of a run, or of the latest run of each suite.
(function (report) {
    'use strict';

    const { isFailed } = report.model;
    const { count, counted } = report.format;

    const known = new WeakMap();

    /// What is to be found out about the test cases in a node that is a run, or holds runs.
    function findingsOf(run, node) {
        const all = report.shown.testCasesIn(run, node);
        const parts = run.parts.filter(
            (part) => part.node.id >= node.id && part.node.id <= node.end,
        );
        const having = (mark) => all.filter((one) => one[mark]);
        return {
            testCases: all,
            parts,
            failed: all.filter(isFailed),
            causes: report.causes.causesOf(run, all),
            newlyFailing: having('isNew'),
            fixed: having('isFixed'),
            added: having('isAdded'),
            flaky: all.filter(report.changes.isFlaky),
            missing: parts.flatMap((part) => report.changes.missing(run, part)),
            isCompared: parts.some(({ source }) => report.changes.comparedRun(source)),
            hasEarlier: parts.some(({ source }) => report.suites.earlier(source).length > 0),
        };
    }

    /// Worked out once for each node.
    function of(run, node) {
        if (!known.has(node)) known.set(node, findingsOf(run, node));
        return known.get(node);
    }

    /// Nothing is said of what the data does not know.
    function missingText({ missing, isCompared }) {
        const said = missing.filter((one) => one.isSaid).length;
        const silent = missing.length - said;
        const facts = said > 0 ? [count(said) + ' did not run'] : [];
        if (silent > 0 || (isCompared && said === 0)) facts.push(count(silent) + ' not in this run');
        return facts.join(', ');
    }

    /// What is not as it should be, in few words; empty when all is.
    function short({ failed, newlyFailing, fixed, flaky }) {
        const facts = [
            [failed, 'failed'],
            [newlyFailing, 'new'],
            [fixed, 'fixed'],
            [flaky, 'flaky'],
        ];
        return facts
            .filter(([all]) => all.length > 0)
            .map(([all, label]) => count(all.length) + ' ' + label)
            .join(', ');
    }

    /// One line: "97 failed, 4 causes, 51 new, 41 fixed, 12 flaky, 6 did not run".
    function line(findings) {
        const { testCases, failed, causes, newlyFailing, fixed, flaky, hasEarlier } = findings;
        if (testCases.length === 0) return 'No test case ran.';
        const facts = [
            count(failed.length) + ' failed',
            failed.length > 0 ? counted(causes.length, 'cause', 'causes') : '',
            hasEarlier ? count(newlyFailing.length) + ' new' : '',
            hasEarlier ? count(fixed.length) + ' fixed' : '',
            count(flaky.length) + ' flaky',
            missingText(findings),
        ];
        return facts.filter(Boolean).join(', ');
    }

    report.summary = { of, line, short };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
