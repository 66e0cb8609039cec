// The small marks for outcomes and kinds, which look the same wherever they are.
(function (report) {
    'use strict';

    const { element, icon } = report.dom;
    const { entryKind, testOutcome } = report.outcomes;

    /// What represents a node: always a shape of its own beside the colour.
    function outcomeOf(node) {
        return node.kind === 'entry'
            ? entryKind.get(node.entryKind)
            : testOutcome.get(node.outcome);
    }

    function outcomeIcon(node) {
        const outcome = outcomeOf(node);
        return icon(outcome.icon, node.raw.result || outcome.label);
    }

    function outcomeBadge(node) {
        const outcome = outcomeOf(node);
        const label = node.kind === 'entry' && node.raw.result ? node.raw.result : outcome.label;
        return element('span', { class: 'badge tone-' + outcome.icon }, icon(outcome.icon), label);
    }

    function badge(iconName, text, title) {
        return element('span', { class: 'badge tone-' + iconName, title }, icon(iconName), text);
    }

    /// What there is to say about a test beside its outcome.
    function extraBadges(node) {
        const badges = [];
        if (node.isNew)
            badges.push(badge('new', 'newly failing', 'Did not fail in the run before'));
        if (node.isFixed) badges.push(badge('fixed', 'fixed', 'Failed in the run before'));
        if (node.isAdded) badges.push(badge('added', 'new', 'In no earlier run of this suite'));
        if (node.unfinished && node.outcome !== 'unfinished')
            badges.push(badge('unfinished', 'unfinished'));
        if (node.kind === 'attempts')
            badges.push(element('span', { class: 'badge' }, node.children.length + ' attempts'));
        if (node.tooDeep)
            badges.push(
                element(
                    'span',
                    { class: 'badge', title: 'What is in it is after it' },
                    'nested deeper',
                ),
            );
        return badges;
    }

    /// What a run came to; `summary` is that of report.runsOf. One that did not end says what
    /// failed until then.
    function runOutcome({ root, failed, ended }) {
        const facts = failed > 0 ? [report.format.count(failed) + ' failed'] : [];
        if (!ended) facts.push('interrupted');
        return facts.length > 0 ? facts.join(' · ') : outcomeOf(root).label.toLowerCase();
    }

    const testTypes = new Map([
        ['overview', 'Latest run of each suite'],
        ['testsuite', 'Test suite'],
        ['testcase', 'Test case'],
        ['section', 'Section'],
        ['feature', 'Feature'],
        ['scenario', 'Scenario'],
        ['scenariooutline', 'Scenario outline'],
        ['row', 'Example'],
        ['step', 'Step'],
    ]);

    function typeLabel(node) {
        if (node.attempt) return 'Attempt';
        if (node.kind === 'entry') return outcomeOf(node).label;
        return testTypes.get(node.raw.type) || 'Section';
    }

    /// Where a machine keeps its files says nothing in a title.
    function withoutMachinePaths(text) {
        return text
            .replace(/(['"])\/(?:[^'"\n/]+\/)+([^'"\n/]+)\1/g, '$1…/$2$1')
            .replace(/(^|[\s(=])\/(?:[^\s'"()/]+\/)+([^\s'"()/]+)/g, '$1…/$2');
    }

    function nodeTitle(node) {
        if (node.attempt) return 'Attempt ' + node.attempt + ' of ' + node.parent.children.length;
        return (
            node.name ||
            (node.kind === 'entry' ? typeLabel(node) : 'Unnamed ' + typeLabel(node).toLowerCase())
        );
    }

    /// One line, and short enough that a message of a megabyte costs nothing.
    function shortTitle(node, longest = 300) {
        const title = nodeTitle(node);
        const line = withoutMachinePaths(title.slice(0, longest)).replace(/\s+/g, ' ').trim();
        return title.length > longest ? line + ' …' : line;
    }

    /// The path of a node below the run.
    function pathOf(node) {
        const path = [];
        for (let one = node.parent; one && one.parent; one = one.parent) path.unshift(one);
        return path;
    }

    report.marks = {
        outcomeOf,
        outcomeIcon,
        outcomeBadge,
        badge,
        extraBadges,
        runOutcome,
        typeLabel,
        withoutMachinePaths,
        nodeTitle,
        shortTitle,
        pathOf,
    };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
