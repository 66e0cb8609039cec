// Turns the document of a run into the tree that the page shows.
//
// A node is `{id, kind, raw, name, parent, children, place, depth, end, key, outcome, unfinished,
// brokeOff, counts, duration}`. `id` is its place in `run.nodes`, which is in the order of reading;
// the nodes below it stand from `id + 1` to `end`. `kind` is 'test', 'attempts' (a test case that
// was retried: its children are the attempts) or 'entry'. `place` counts among its siblings,
// `brokeOff` is set on the innermost test that was running when the data breaks off.
(function (report) {
    'use strict';

    const { outcomes } = report;
    const severity = new Map(outcomes.testOutcomes.map((outcome, index) => [outcome.key, index]));

    function isTest(raw) {
        return Array.isArray(raw.tests) || raw.isSkipped === true;
    }

    function isRetryOf(raw, attempts) {
        const last = attempts[attempts.length - 1];
        return (
            isTest(raw) &&
            raw.retry &&
            last.retry &&
            raw.type === last.type &&
            raw.name === last.name &&
            raw.retry.count > last.retry.count
        );
    }

    /// The children of a test with the attempts of each retried test case as one list.
    function withAttempts(list) {
        const children = [];
        for (const raw of list) {
            if (!raw || typeof raw !== 'object') continue;
            const last = children[children.length - 1];
            if (last && isTest(last[0]) && isRetryOf(raw, last)) last.push(raw);
            else children.push([raw]);
        }
        return children;
    }

    /// Names a child within its parent: by its name for a test, so that the same test case has the
    /// same key in each run, and by its place for an entry.
    function childKey(parent, node, index, used) {
        let part = '!' + index;
        if (parent.kind === 'attempts') {
            part = '@' + (index + 1);
        } else if (node.kind !== 'entry') {
            part = report.format.encoded(node.name) || '~0';
            const seen = (used.get(part) || 0) + 1;
            used.set(part, seen);
            if (seen > 1) part += '~' + seen;
        }
        return parent.key ? parent.key + '/' + part : part;
    }

    function durationOf(raw) {
        const time = Date.parse(raw.stop) - Date.parse(raw.start);
        return time >= 0 ? time : null;
    }

    function addNode(run, raw, kind, parent) {
        const node = {
            id: run.nodes.length,
            kind,
            raw,
            parent,
            children: [],
            key: '',
            name: raw.name || '',
            depth: parent ? parent.depth + 1 : 0,
            place: parent ? parent.children.length : 0,
        };
        run.nodes.push(node);
        if (parent) parent.children.push(node);
        return node;
    }

    function finish(run, node) {
        node.end = run.nodes.length - 1;
        run.byKey.set(node.key, node);
    }

    function buildEntry(run, node) {
        node.entryKind =
            'result' in node.raw ? outcomes.kindOfResult(node.raw.result) : 'attachment';
        node.name =
            node.raw.text ||
            (node.entryKind === 'attachment' ? report.format.locationText(node.raw.uri) : '');
    }

    function buildChildren(run, node) {
        const used = new Map();
        withAttempts(node.raw.tests || []).forEach((attempts, index) => {
            const raw = attempts[0];
            const kind = attempts.length > 1 ? 'attempts' : isTest(raw) ? 'test' : 'entry';
            const child = addNode(run, raw, kind, node);
            child.key = childKey(node, child, index, used);
            if (kind === 'attempts') buildAttempts(run, child, attempts);
            else if (kind === 'test') buildTest(run, child);
            else buildEntry(run, child);
            finish(run, child);
        });
    }

    function buildAttempts(run, group, attempts) {
        attempts.forEach((raw, index) => {
            const child = addNode(run, raw, 'test', group);
            child.key = childKey(group, child, index);
            child.attempt = index + 1;
            buildTest(run, child);
            finish(run, child);
        });
        const last = group.children[group.children.length - 1];
        const failedBefore = group.children.slice(0, -1).some(isFailed);
        group.outcome = last.outcome === 'passed' && failedBefore ? 'flaky' : last.outcome;
        group.unfinished = last.unfinished;
        group.counts = sumOfCounts(group.children);
        group.duration = group.children.reduce((sum, attempt) => sum + (attempt.duration || 0), 0);
    }

    function buildTest(run, node) {
        buildChildren(run, node);
        node.unfinished = !('stop' in node.raw);
        node.brokeOff = node.unfinished && !node.children.some((child) => child.unfinished);
        node.counts = sumOfCounts(node.children);
        node.outcome = outcomeOf(node);
        node.duration = durationOf(node.raw);
    }

    function sumOfCounts(children) {
        const counts = {};
        for (const child of children) {
            if (child.kind === 'entry') {
                counts[child.entryKind] = (counts[child.entryKind] || 0) + 1;
                continue;
            }
            for (const [key, count] of Object.entries(child.counts))
                counts[key] = (counts[key] || 0) + count;
        }
        return counts;
    }

    function outcomeOfChild(child) {
        if (child.kind !== 'entry') return child.outcome;
        if (child.entryKind === 'error') return 'error';
        return outcomes.entryKind.get(child.entryKind).failed ? 'failed' : 'passed';
    }

    function outcomeOf(node) {
        if (node.raw.isSkipped) return 'skipped';
        let worst = node.unfinished
            ? 'unfinished'
            : node.children.length > 0
              ? 'skipped'
              : 'passed';
        for (const child of node.children) {
            const outcome = outcomeOfChild(child);
            if (severity.get(outcome) < severity.get(worst)) worst = outcome;
        }
        return worst;
    }

    function isFailed(node) {
        return node.kind === 'entry'
            ? Boolean(outcomes.entryKind.get(node.entryKind).failed)
            : Boolean(outcomes.testOutcome.get(node.outcome).failed);
    }

    /// The outermost test cases: a skipped test case holds one more of its own name.
    function collectTestCases(node, found) {
        if (node.kind === 'entry') return;
        if (node.raw.type === 'testcase') found.push(node);
        else node.children.forEach((child) => collectTestCases(child, found));
    }

    /// For each node the test case that it is or lies in.
    function assignTestCases(run) {
        for (const testCase of run.testCases) {
            for (let id = testCase.id; id <= testCase.end; ++id) run.nodes[id].testCase = testCase;
        }
    }

    function rootOf(tests) {
        if (tests.length === 1 && isTest(tests[0])) return tests[0];
        return {
            type: 'testsuite',
            name: tests.length > 0 ? 'Run' : 'Run that did not start',
            tests,
        };
    }

    /// `index` counts from 0, in the order of the data file.
    function buildRun(document, index) {
        const run = { index, nodes: [], byKey: new Map(), testCases: [] };
        run.root = addNode(run, rootOf(document.tests || []), 'test', null);
        buildTest(run, run.root);
        finish(run, run.root);
        run.name = run.root.name;
        run.ended = document.ended !== false && !run.root.unfinished;
        collectTestCases(run.root, run.testCases);
        assignTestCases(run);
        run.failed = run.testCases.filter(isFailed).length;
        run.attempts = run.testCases.reduce(
            (sum, one) => sum + (one.kind === 'attempts' ? one.children.length : 1),
            0,
        );
        return run;
    }

    /// How often each outcome occurs among the test cases.
    function outcomeCounts(run) {
        const counts = {};
        for (const testCase of run.testCases)
            counts[testCase.outcome] = (counts[testCase.outcome] || 0) + 1;
        return counts;
    }

    /// Where a person looks for what went wrong.
    function isFailurePlace(node) {
        return node.kind === 'entry' ? isFailed(node) : Boolean(node.brokeOff);
    }

    report.model = { buildRun, outcomeCounts, isFailed, isFailurePlace };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
