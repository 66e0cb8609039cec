// Turns the document of a run into the tree that the page shows.
//
// A node is `{id, kind, raw, name, parent, children, place, depth, end, key, outcome, unfinished,
// brokeOff, counts, duration}`. `id` is its place in `run.nodes`, which is in the order of reading;
// what is in it is from `id + 1` to `end`. `key` names it within the run, see `nodeOf`. `kind` is 'test', 'attempts' (a test case that
// was retried: its children are the attempts) or 'entry'. `place` counts among its siblings,
// `brokeOff` is set on the innermost test that was running when the data breaks off. `tooDeep` is
// set on a test that is beside the one it is in, for want of levels; its outcome, counts and
// `end` are still those of all that is in it.
(function (report) {
    'use strict';

    const { outcomes, walk } = report;

    function isFailed(node) {
        return node.kind === 'entry'
            ? Boolean(outcomes.entryKind.get(node.entryKind).failed)
            : Boolean(outcomes.testOutcome.get(node.outcome).failed);
    }

    function entryName(raw, kind) {
        if (raw.text || kind !== 'attachment') return raw.text || '';
        const path = report.format.locationText(raw.uri);
        return path.slice(path.lastIndexOf('/') + 1) || path;
    }

    const none = [];

    /// Keys of entries are put together when they are asked for: there may be a million of them.
    class Entry {
        get key() {
            const above = this.parent.key;
            return (above ? above + '/' : '') + '!' + this.place;
        }
    }

    /// Places get `node`, the node of the test, and `holder`, the one whose children its children
    /// become.
    class TreeBuilder {
        constructor(run) {
            this.run = run;
        }

        addNode(raw, kind, parent, name) {
            const { nodes } = this.run;
            const node = kind === 'entry' ? new Entry() : { key: '' };
            node.id = nodes.length;
            node.kind = kind;
            node.raw = raw;
            node.parent = parent;
            node.children = kind === 'entry' ? none : [];
            node.name = name;
            node.depth = parent ? parent.depth + 1 : 0;
            node.place = parent ? parent.children.length : 0;
            nodes.push(node);
            if (parent) parent.children.push(node);
            return node;
        }

        setKey(node, part) {
            node.key = node.parent && node.parent.key ? node.parent.key + '/' + part : part;
            this.run.byKey.set(node.key, node);
        }

        enter(place) {
            const { kind, raw, parent } = place;
            const holder = parent ? parent.holder : null;
            place.node = this.addNode(raw, kind, holder, raw.name || '');
            place.node.counts = {};
            place.node.tooDeep = Boolean(parent) && parent.node !== holder;
            place.holder = place.node.depth < walk.deepest ? place.node : holder;
            if (parent && parent.kind === 'attempts') place.node.attempt = parent.held;
            this.setKey(place.node, parent ? place.takeName() : '');
            if (place.holder !== place.node) place.names = parent.names;
        }

        entry(place, raw, kind) {
            const node = this.addNode(raw, 'entry', place.holder, entryName(raw, kind));
            node.entryKind = kind;
            node.end = node.id;
            place.node.counts[kind] = (place.node.counts[kind] || 0) + 1;
        }

        leave(place) {
            const { node, outcome, unfinished, brokeOff, duration } = place;
            Object.assign(node, { outcome, unfinished, brokeOff, duration });
            node.end = this.run.nodes.length - 1;
            if (!place.parent) return;
            const { counts } = place.parent.node;
            for (const [kind, count] of Object.entries(node.counts))
                counts[kind] = (counts[kind] || 0) + count;
        }
    }

    /// The outermost test cases, since a skipped test case holds one more of its own name. Each
    /// node gets the test case that it is or is in.
    function collectTestCases(run) {
        for (let id = 0; id < run.nodes.length; ++id) {
            const testCase = run.nodes[id];
            if (testCase.kind === 'entry' || testCase.raw.type !== 'testcase') continue;
            run.testCases.push(testCase);
            for (; id <= testCase.end; ++id) run.nodes[id].testCase = testCase;
            --id;
        }
    }

    /// `index` counts from 0, in the order of the data file.
    function buildRun(document, index) {
        const run = { index, nodes: [], byKey: new Map(), testCases: [] };
        const root = walk.rootPlace(walk.rootOf(document));
        walk.walk(root, new TreeBuilder(run));
        run.root = root.node;
        run.name = run.root.name;
        run.ended = document.ended !== false && !run.root.unfinished;
        collectTestCases(run);
        run.failed = run.testCases.filter(isFailed).length;
        run.attempts = run.testCases.reduce(
            (sum, one) => sum + (one.kind === 'attempts' ? one.children.length : 1),
            0,
        );
        return run;
    }

    /// The node with this key; undefined when the run has none.
    function nodeOf(run, key) {
        const [, above, place] = /^(?:(.*)\/)?!(\d+)$/.exec(key) || [];
        const parent = place ? run.byKey.get(above || '') : undefined;
        const entry = parent && parent.children[place];
        return entry && entry.key === key ? entry : run.byKey.get(key);
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

    /// The failure that is next to the node, `by` 1 forwards or -1 backwards and round the end, of
    /// those that `isShown` takes; null when there is none.
    function nextFailure({ nodes }, from, by, isShown) {
        for (let step = 1; step <= nodes.length; ++step) {
            const node = nodes[(from.id + by * step + nodes.length) % nodes.length];
            if (isFailurePlace(node) && isShown(node)) return node;
        }
        return null;
    }

    /// The entries that `wanted` takes of what is in a test, in the order of reading.
    function entriesWithin(run, node, wanted) {
        const entries = [];
        for (let id = node.id + 1; id <= node.end; ++id) {
            const one = run.nodes[id];
            if (one.kind === 'entry' && wanted(one)) entries.push(one);
        }
        return entries;
    }

    report.model = {
        buildRun,
        nodeOf,
        outcomeCounts,
        isFailurePlace,
        isFailed,
        nextFailure,
        entriesWithin,
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
