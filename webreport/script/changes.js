// What changed since the earlier runs of the same suite: by test case, over outcomes and durations.
(function (report) {
    'use strict';

    const { isFailed } = report.model;
    const { suites } = report;

    // How many runs, the shown one included, say whether a test case is flaky and what is usual.
    const mostRecent = 10;
    const fewestUsual = 2;

    // Times are whole seconds: what seems to be longer by less may not be.
    const tick = 1000;

    function hasRun(node) {
        return Boolean(node) && node.outcome !== 'skipped' && node.outcome !== 'unfinished';
    }

    function median(numbers) {
        const sorted = [...numbers].sort((a, b) => a - b);
        return sorted.length > 0 ? sorted[Math.floor((sorted.length - 1) / 2)] : 0;
    }

    /// Calls for the summaries of runs one by one, as far back as needed.
    function findBefore(runs, key, wanted) {
        for (const run of runs) {
            const found = run.summary.cases.get(key);
            if (wanted(found)) return found;
        }
        return null;
    }

    /// `isNew`: fails, and did not when it last ran. `isFixed`: the other way round. `isAdded`: no
    /// earlier run knows it.
    function markTestCase(testCase, key, before, isRerun) {
        const previous = hasRun(testCase) ? findBefore(before, key, hasRun) : null;
        const failed = isFailed(testCase);
        testCase.isNew = Boolean(previous) && failed && !isFailed(previous);
        testCase.isFixed = Boolean(previous) && !failed && isFailed(previous);
        testCase.isAdded =
            !isRerun && before.length > 0 && !previous && !findBefore(before, key, Boolean);
    }

    /// `{flaky, ran}`: in how many of the runs that ran a test case it was flaky. One that changed
    /// between failed and passed more than once counts as flaky where it failed. `nodes` are in the
    /// order of the runs.
    function flakiness(nodes) {
        const ran = nodes.filter(hasRun);
        let switches = 0;
        for (let at = 1; at < ran.length; ++at)
            if (isFailed(ran[at]) !== isFailed(ran[at - 1])) ++switches;
        const retried = ran.filter((node) => node.outcome === 'flaky').length;
        const failed = switches > 1 ? ran.filter(isFailed).length : 0;
        return { flaky: retried + failed, ran: ran.length };
    }

    /// What is longer by more than can come of the clock than what is usual.
    function isSlower(duration, usual) {
        return duration - tick >= 1.5 * (usual + tick);
    }

    function markUsual(testCase, recent) {
        const durations = recent
            .filter((one) => hasRun(one) && one.duration !== null)
            .map((one) => one.duration);
        const isKnown = testCase.duration !== null && durations.length >= fewestUsual;
        const usual = median(durations);
        testCase.usual = isKnown && isSlower(testCase.duration, usual) ? usual : null;
    }

    function markPart(run, part) {
        const before = suites.earlier(part.source);
        const recent = before.slice(0, mostRecent - 1).reverse();
        const isRerun = suites.isRerun(part.source);
        for (const testCase of report.shown.testCasesIn(run, part.node)) {
            const key = report.shown.keyIn(part, testCase);
            const known = recent.map((one) => one.summary.cases.get(key)).filter(Boolean);
            markTestCase(testCase, key, before, isRerun);
            markUsual(testCase, known);
            testCase.flakiness = flakiness([...known, testCase]);
        }
    }

    /// Sets the marks of the test cases of a model with `parts`: `isNew`, `isFixed`, `isAdded`;
    /// `flakiness`; `usual`, in milliseconds, where it took longer than that, else null.
    function mark(run) {
        for (const part of run.parts) markPart(run, part);
    }

    function isFlaky({ outcome, flakiness: known }) {
        return outcome === 'flaky' || known.flaky > 1;
    }

    /// The run whose test cases a run should have too; undefined for a rerun, which chose its own.
    function comparedRun(source) {
        if (suites.isRerun(source)) return undefined;
        return suites.earlier(source).find((run) => !suites.isRerun(run));
    }

    /// The test cases of the compared run that are not in this one, as `{run, key, raw, isSaid}`;
    /// `isSaid` where the run itself says that it did not get to them. One of which no run before
    /// knows has no `run`.
    function missing(run, part) {
        const { source } = part;
        const said = new Set(suites.leftOut(source));
        const before = comparedRun(source);
        const found = [];
        for (const { key, raw } of before ? before.summary.cases.values() : []) {
            if (run.byKey.has(part.node.key ? part.node.key + '/' + key : key)) continue;
            found.push({ run: before, key, raw, isSaid: said.delete(raw.name) });
        }
        return [...found, ...[...said].map((name) => ({ key: '', raw: { name }, isSaid: true }))];
    }

    /// Those that took much longer than the others, by more than can come of the clock: where all
    /// take as long, there is nothing to look at.
    function slowest(testCases) {
        const known = testCases.filter((one) => one.duration !== null);
        const least = Math.max(tick, 2 * median(known.map((one) => one.duration)));
        return known
            .filter((one) => one.duration - tick >= least)
            .sort((a, b) => b.duration - a.duration);
    }

    report.changes = { mark, flakiness, isFlaky, comparedRun, missing, slowest };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
