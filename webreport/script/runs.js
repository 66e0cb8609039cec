// The runs of the data file. Of all but the shown ones only what their test cases came to is ever
// worked out, and that when it is asked for: a data file may hold months of nights.
(function (report) {
    'use strict';

    const { outcomes, walk } = report;

    const silent = { enter() {}, leave() {}, entry() {} };

    function isFailure(kind) {
        return Boolean(outcomes.entryKind.get(kind).failed);
    }

    /// Collects the outermost test cases by key; tests round them get keys on the way, those
    /// within none. Each place gets its first failure in the order of reading; of a test case that
    /// was retried the last attempt counts.
    class CaseCollector {
        constructor() {
            this.cases = new Map();
        }

        enter(place) {
            const { parent } = place;
            place.inCase = Boolean(parent && (parent.inCase || parent.isCase));
            if (place.inCase) return;
            place.isCase = place.raw.type === 'testcase';
            const name = parent ? place.takeName() : '';
            place.key = parent && parent.key ? parent.key + '/' + name : name;
        }

        leave(place) {
            const { parent, failure } = place;
            if (parent && (parent.kind === 'attempts' || !parent.failure)) parent.failure = failure;
            if (!place.isCase) return;
            const { kind, raw, outcome, duration, unfinished } = place;
            const { key } = place;
            this.cases.set(key, { key, kind, raw, outcome, duration, unfinished, failure });
        }

        entry(place, raw, kind) {
            if (!place.failure && isFailure(kind)) place.failure = raw;
        }
    }

    class Run {
        constructor(document, index) {
            this.index = index;
            this.document = document;
            this.raw = walk.rootOf(document);
            this.name = this.raw.name || '';
        }

        /// `{root, cases, failed, ended}`: outcomes of the run as a whole and of its test cases,
        /// by key.
        get summary() {
            if (!this.known) this.known = this.summarize();
            return this.known;
        }

        summarize() {
            const root = walk.rootPlace(this.raw);
            const collector = new CaseCollector();
            walk.walk(root, collector);
            const { kind, raw, outcome, duration, unfinished } = root;
            let failed = 0;
            for (const one of collector.cases.values())
                if (outcomes.testOutcome.get(one.outcome).failed) ++failed;
            return {
                root: { kind, raw, outcome, duration, unfinished },
                cases: collector.cases,
                failed,
                ended: this.document.ended !== false && !unfinished,
            };
        }

        /// What the test case or section with this key came to; undefined when it did not run.
        test(key) {
            const known = this.summary.cases.get(key);
            if (known) return known;
            const place = walk.find(this.raw, key);
            if (!place) return undefined;
            walk.walk(place, silent);
            const { kind, raw, outcome, duration, unfinished } = place;
            return { key, kind, raw, outcome, duration, unfinished };
        }
    }

    /// Gives each run the `key` that names it in addresses: its start, since its number changes
    /// when older runs are cut away. One that was lost before it started has only that.
    function nameRuns(runs) {
        const seen = new Map();
        for (const run of runs) {
            const start = run.raw.start || '';
            const place = (seen.get(start) || 0) + 1;
            seen.set(start, place);
            run.key = !start ? String(run.index + 1) : start + (place > 1 ? '~' + place : '');
        }
        return runs;
    }

    /// `index` of a run counts from 0, in the order of the data file; `suite` is what
    /// report.suites says.
    report.runsOf = (documents) => {
        const runs = documents.map((document, index) => new Run(document, index));
        report.suites.assign(runs);
        return nameRuns(runs);
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
