// Which nodes of a run are shown, and in which order.
//
// Criteria are `{text, tests, entries, slowest}`. `tests` and `entries` are Maps from an outcome or
// kind to 'only' or 'not'.
(function (report) {
    'use strict';

    const { searchText } = report;

    /// Words that must occur, quoted ones as a phrase, and those after a minus that must not.
    /// No more than 30 of them count.
    function parseText(text) {
        const wanted = [];
        const unwanted = [];
        for (const [, minus, phrase, word] of text
            .toLowerCase()
            .matchAll(/(-?)(?:"([^"]*)"?|(\S+))/g)) {
            const term = phrase === undefined ? word : phrase;
            if (term && wanted.length + unwanted.length < 30)
                (minus ? unwanted : wanted).push(term);
        }
        return { wanted, unwanted };
    }

    function isActive(criteria) {
        return (
            Boolean(criteria.text.trim()) || criteria.tests.size > 0 || criteria.entries.size > 0
        );
    }

    function wantsOnly(modes) {
        return [...modes.values()].includes('only');
    }

    /// A thing with several marks is kept when one of them is wanted and none unwanted.
    function passes(modes, marks) {
        if (marks.some((mark) => modes.get(mark) === 'not')) return false;
        return !wantsOnly(modes) || marks.some((mark) => modes.get(mark) === 'only');
    }

    function marksOf(testCase) {
        const marks = [testCase.outcome];
        if (testCase.isNew) marks.push('new');
        if (testCase.isFixed) marks.push('fixed');
        if (testCase.isAdded) marks.push('added');
        if (testCase.unfinished && testCase.outcome !== 'unfinished') marks.push('unfinished');
        return marks;
    }

    function passesTestFilter(node, modes) {
        if (modes.size === 0) return true;
        return node.testCase ? passes(modes, marksOf(node.testCase)) : !wantsOnly(modes);
    }

    /// A test that was running when the data breaks off counts as an error.
    function passesEntryFilter(node, modes) {
        if (modes.size === 0) return true;
        if (node.kind === 'entry') return passes(modes, [node.entryKind]);
        return !wantsOnly(modes) || (node.brokeOff && modes.get('error') === 'only');
    }

    /// Of each node the wanted terms that it holds by `own`, and by `all` with those of the tests
    /// round it, as bits; `all` is -1 when an unwanted one is among them.
    function termMasks(run, terms) {
        const own = new Int32Array(run.nodes.length);
        const all = new Int32Array(run.nodes.length);
        if (terms.wanted.length + terms.unwanted.length === 0) return { own, all };
        for (const node of run.nodes) {
            const around = node.parent ? all[node.parent.id] : 0;
            const text = searchText(node);
            terms.wanted.forEach((term, bit) => {
                if (text.includes(term)) own[node.id] |= 1 << bit;
            });
            const isUnwanted = around < 0 || terms.unwanted.some((term) => text.includes(term));
            all[node.id] = isUnwanted ? -1 : around | own[node.id];
        }
        return { own, all };
    }

    /// `shown[id]` says whether the node is to be seen, `opened[id]` whether something that was
    /// asked for is in it; `hits` counts what was asked for. `count[id]` of the children of a
    /// node are shown, and from the last of them it is the `fromEnd[id]`th, from 1.
    function select(run, criteria) {
        const size = run.nodes.length;
        const result = {
            shown: new Uint8Array(size),
            opened: new Uint8Array(size),
            count: new Uint32Array(size),
            fromEnd: new Uint32Array(size),
            hits: 0,
        };
        const terms = parseText(criteria.text);
        const full = (1 << terms.wanted.length) - 1;
        const masks = termMasks(run, terms);
        const onlyEntries = wantsOnly(criteria.entries);
        for (let id = size - 1; id >= 0; --id) {
            const node = run.nodes[id];
            const asked =
                masks.all[id] === full &&
                passesTestFilter(node, criteria.tests) &&
                passesEntryFilter(node, criteria.entries);
            if (asked) result.shown[id] = 1;
            if (!node.parent || !result.shown[id]) continue;
            const parent = node.parent.id;
            result.shown[parent] = 1;
            result.fromEnd[id] = ++result.count[parent];
            const isHit = full > 0 && (masks.all[parent] !== full || masks.own[id] === full);
            const bySelf = asked && (onlyEntries || isHit);
            if (bySelf) ++result.hits;
            if (bySelf || result.opened[id]) result.opened[parent] = 1;
        }
        result.shown[run.root.id] = 1;
        return result;
    }

    /// Orders children of a run: tests by how long they took, after them what took no time.
    function bySlowness(a, b) {
        const isEntry = (node) => Number(node.kind === 'entry');
        const longer = isEntry(a) || isEntry(b) ? 0 : (b.duration || 0) - (a.duration || 0);
        return isEntry(a) - isEntry(b) || longer || a.id - b.id;
    }

    /// Whether the children are sorted: those of runs. Below them the order is the story.
    function isSortable(node) {
        return !node.parent || node.parent.raw.type === 'overview';
    }

    /// The node and all it is in, outermost first.
    function chainOf(node) {
        const chain = [];
        for (let one = node; one; one = one.parent) chain.unshift(one);
        return chain;
    }

    /// Orders nodes as they are listed, also such as no filter lets through.
    function compareRows(a, b, slowest) {
        const [left, right] = [chainOf(a), chainOf(b)];
        let depth = 0;
        while (left[depth] && left[depth] === right[depth]) ++depth;
        const sorted = slowest && left[depth] && right[depth] && isSortable(left[depth].parent);
        return sorted ? bySlowness(left[depth], right[depth]) : a.id - b.id;
    }

    /// The nodes to list, top to bottom. `isOpen` decides for each shown test whether its children
    /// are listed.
    function listRows(run, selection, isOpen, slowest) {
        const rows = [];
        const waiting = [run.root];
        while (waiting.length > 0) {
            const node = waiting.pop();
            if (!selection.shown[node.id]) continue;
            rows.push(node);
            if (node.kind === 'entry' || !isOpen(node)) continue;
            const children =
                slowest && isSortable(node) ? [...node.children].sort(bySlowness) : node.children;
            for (let index = children.length - 1; index >= 0; --index)
                waiting.push(children[index]);
        }
        return rows;
    }

    /// Where the node is among its listed siblings, as `{place, count}`; null for a run, and
    /// where the order is not that of reading.
    function siblings(node, selection, slowest) {
        const { parent } = node;
        if (!parent || (slowest && isSortable(parent))) return null;
        const count = selection.count[parent.id];
        return { place: count + 1 - selection.fromEnd[node.id], count };
    }

    report.filter = { parseText, select, listRows, compareRows, siblings, isActive, marksOf };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
