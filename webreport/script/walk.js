// Goes through the tests of a document in the order of reading, and says what each came to.
//
// No step calls itself: a script may nest sections deeper than the browser's stack.
(function (report) {
    'use strict';

    const { outcomes } = report;

    /// Tests at this depth have no children in the tree: what is in them is after them.
    const deepest = 200;

    const severity = new Map(outcomes.testOutcomes.map((outcome, index) => [outcome.key, index]));
    const passed = severity.get('passed');
    const harmless = severity.get('skipped');
    const severityOfEntry = new Map(
        outcomes.entryKinds.map((kind) => [
            kind.key,
            kind.key === 'error'
                ? severity.get('error')
                : severity.get(kind.failed ? 'failed' : 'passed'),
        ]),
    );

    function isTest(raw) {
        return Array.isArray(raw.tests) || raw.isSkipped === true;
    }

    function isNode(raw) {
        return Boolean(raw) && typeof raw === 'object';
    }

    function isRetryOf(raw, last) {
        return (
            isNode(raw) &&
            isTest(raw) &&
            raw.retry &&
            raw.type === last.type &&
            raw.name === last.name &&
            raw.retry.count > last.retry.count
        );
    }

    function entryKindOf(raw) {
        return 'result' in raw ? outcomes.kindOfResult(raw.result) : 'attachment';
    }

    function durationOf(raw) {
        const time = Date.parse(raw.stop) - Date.parse(raw.start);
        return time >= 0 ? time : null;
    }

    /// A test on the way, or a test case that was retried: the attempts are its children. `raws`
    /// has one document of a test, or those of all attempts. `outcome`, `unfinished` and `brokeOff`
    /// are there once it was left.
    class Place {
        constructor(kind, raws, parent) {
            this.kind = kind;
            this.raws = raws;
            this.raw = raws[0];
            this.parent = parent;
            this.children = kind === 'attempts' ? raws : this.raw.tests || [];
            this.next = 0;
            this.depth = parent ? parent.depth + 1 : 0;
            this.names = null;
            this.held = 0;
            this.worst = severity.size;
            this.holdsUnfinished = false;
            this.isOrHoldsCase = this.raw.type === 'testcase';
            this.attempts = kind === 'attempts' ? [] : null;
        }

        get mayHoldAttempts() {
            return this.kind === 'test' && this.depth + 2 < deepest;
        }

        /// In milliseconds; null when it is not known.
        get duration() {
            return this.attempts
                ? this.attempts.reduce((sum, one) => sum + (one.duration || 0), 0)
                : durationOf(this.raw);
        }

        /// The next child: a Place, the document of an entry, or null after the last one.
        advance() {
            while (this.next < this.children.length) {
                const raw = this.children[this.next++];
                if (!isNode(raw)) continue;
                ++this.held;
                if (!isTest(raw)) return raw;
                if (!raw.retry || !this.mayHoldAttempts) return new Place('test', [raw], this);
                const raws = this.withRetries(raw);
                return new Place(raws.length > 1 ? 'attempts' : 'test', raws, this);
            }
            return null;
        }

        withRetries(first) {
            const raws = [first];
            while (isRetryOf(this.children[this.next], raws[raws.length - 1]))
                raws.push(this.children[this.next++]);
            return raws;
        }

        /// Names the test within its parent: by its name, so that the same test case has the same
        /// key in each run. To be asked for once, in the order of reading.
        takeName() {
            const { parent } = this;
            if (parent.kind === 'attempts') return '@' + parent.held;
            const name = report.format.encoded(this.raw.name || '') || '~0';
            if (!parent.names) parent.names = new Map();
            const seen = (parent.names.get(name) || 0) + 1;
            parent.names.set(name, seen);
            return seen > 1 ? name + '~' + seen : name;
        }

        takeOutcome(level) {
            if (level < this.worst) this.worst = level;
        }

        leave() {
            if (this.kind === 'attempts') this.leaveAttempts();
            else this.leaveTest();
            if (!this.parent) return;
            this.parent.takeOutcome(severity.get(this.outcome));
            if (this.unfinished) this.parent.holdsUnfinished = true;
            if (this.isOrHoldsCase) this.parent.isOrHoldsCase = true;
            if (this.parent.attempts) this.parent.attempts.push(this);
        }

        leaveTest() {
            const { raw } = this;
            this.unfinished = !('stop' in raw);
            this.brokeOff = this.unfinished && !this.holdsUnfinished;
            const own = this.unfinished
                ? severity.get('unfinished')
                : this.held > 0
                  ? harmless
                  : passed;
            this.outcome = raw.isSkipped
                ? 'skipped'
                : outcomes.testOutcomes[Math.min(own, this.worst)].key;
            const isRun = raw.type === 'testsuite' || raw.type === 'overview';
            if (isRun && !this.isOrHoldsCase && this.outcome === 'passed') this.outcome = 'empty';
        }

        leaveAttempts() {
            const last = this.attempts[this.attempts.length - 1];
            const failedBefore = this.attempts
                .slice(0, -1)
                .some((one) => outcomes.testOutcome.get(one.outcome).failed);
            this.outcome = last.outcome === 'passed' && failedBefore ? 'flaky' : last.outcome;
            this.unfinished = last.unfinished;
        }
    }

    /// The visitor gets `enter(place)` and `leave(place)` for each test, the given one included,
    /// and `entry(place, raw, kind)` for what is in it.
    function walk(root, visitor) {
        visitor.enter(root);
        for (let place = root; place;) {
            const child = place.advance();
            if (child instanceof Place) {
                visitor.enter(child);
                place = child;
            } else if (child) {
                const kind = entryKindOf(child);
                place.takeOutcome(severityOfEntry.get(kind));
                visitor.entry(place, child, kind);
            } else {
                place.leave();
                visitor.leave(place);
                place = place.parent;
            }
        }
    }

    /// The test that a document is about; one is made up for a run that was lost.
    function rootOf(document) {
        const tests = document.tests || [];
        if (tests.length === 1 && isNode(tests[0]) && isTest(tests[0])) return tests[0];
        return {
            type: 'testsuite',
            name: tests.length > 0 ? 'Run' : 'Run that did not start',
            tests,
        };
    }

    function rootPlace(raw) {
        return new Place('test', [raw], null);
    }

    /// The test with this key below `root`, on its own and not yet walked; null when there is none.
    function find(root, key) {
        let place = rootPlace(root);
        for (const name of key ? key.split('/') : []) {
            let child = place.advance();
            while (child && !(child instanceof Place && child.takeName() === name))
                child = place.advance();
            if (!child) return null;
            place = child;
        }
        return new Place(place.kind, place.raws, null);
    }

    report.walk = { deepest, walk, find, rootOf, rootPlace };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
