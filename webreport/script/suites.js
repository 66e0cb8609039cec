// Which runs are of one suite, and which of them a run is compared with.
(function (report) {
    'use strict';

    const { locationText } = report.format;

    // What the runner logs at the start and before the end of a run.
    const rerunText = 'Rerun of failed test cases';
    const leftOutText = /^\d+ test cases? did not run$/;

    /// A suite is its name and its place: another directory may hold test cases of the same names.
    function identityOf({ type, name, uri }) {
        return JSON.stringify([type === 'testcase', name, uri]);
    }

    function isLost(run) {
        return !run.raw.start;
    }

    /// Gives each run its `suite`, `{name, place, runs}` with the runs oldest first. A run that was
    /// lost before it started counts to the only suite there is.
    function assign(runs) {
        const known = new Map();
        const suiteOf = (raw) => {
            const identity = identityOf(raw);
            if (!known.has(identity))
                known.set(identity, { name: raw.name, place: locationText(raw.uri), runs: [] });
            return known.get(identity);
        };
        for (const run of runs) if (!isLost(run)) run.suite = suiteOf(run.raw);
        const [only] = known.size === 1 ? known.values() : [];
        for (const run of runs) {
            if (isLost(run)) run.suite = only || suiteOf(run.raw);
            run.suite.runs.push(run);
        }
    }

    /// The latest run of each suite, in the order in which the suites first ran. What was lost
    /// before it started is shown as long as nothing came after it.
    function latestOf(runs) {
        const suites = new Set(runs.map((run) => run.suite));
        const latest = [...suites].map((suite) => suite.runs[suite.runs.length - 1]);
        return latest.filter((run) => !isLost(run) || run.index === runs.length - 1);
    }

    /// The run of the same suite that is `by` runs later; undefined when there is none.
    function neighbour(run, by) {
        const { runs } = run.suite;
        return runs[runs.indexOf(run) + by];
    }

    function isMessage(raw, text) {
        return Boolean(raw) && raw.type === 'msg' && text.test(raw.text || '');
    }

    /// Whether a run repeated what had failed in the one before it.
    function isRerun({ raw }) {
        const tests = raw.tests || [];
        const firstTest = tests.findIndex((one) => one && Array.isArray(one.tests));
        return tests
            .slice(0, firstTest < 0 ? tests.length : firstTest)
            .some((one) => isMessage(one, RegExp('^' + rerunText + '$')));
    }

    /// The names of the test cases of which the run says that it did not get to them; in a joined
    /// one each shard does.
    function leftOut({ raw }) {
        return (raw.tests || [])
            .filter((one) => isMessage(one, leftOutText))
            .flatMap((one) => (one.detail || '').split('\n').filter(Boolean));
    }

    /// The earlier runs that a run is compared with, latest first. What a run repeats is no
    /// comparison for it: all marks would be lost.
    function earlier(run) {
        const { runs } = run.suite;
        let at = runs.indexOf(run);
        while (at > 0 && isRerun(runs[at])) --at;
        return runs.slice(0, at).reverse();
    }

    report.suites = { assign, latestOf, neighbour, isRerun, leftOut, earlier };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
