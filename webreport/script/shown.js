// What the page shows as one tree: a run, or the latest run of each suite.
//
// To the model of it come `parts`, `{source, node}` for each run in it: the run of report.runsOf,
// and the node that it is in the tree.
(function (report) {
    'use strict';

    const { model } = report;

    function sumOfDurations(parts) {
        const known = parts.map(({ node }) => node.duration).filter((one) => one !== null);
        return known.length > 0 ? known.reduce((sum, one) => sum + one, 0) : null;
    }

    function buildAll(sources) {
        const root = {
            type: 'overview',
            name: sources.length + ' suites',
            stop: '',
            tests: sources.map((source) => source.raw),
        };
        const run = model.buildRun({ tests: [root] }, -1);
        run.parts = sources.map((source, place) => ({ source, node: run.root.children[place] }));
        run.root.duration = sumOfDurations(run.parts);
        run.ended = run.parts.every(
            ({ source, node }) => source.document.ended !== false && !node.unfinished,
        );
        return run;
    }

    function buildOne(source) {
        const run = model.buildRun(source.document, source.index);
        run.parts = [{ source, node: run.root }];
        return run;
    }

    /// `index` of the model is -1 for several runs.
    function build(sources) {
        const run = sources.length === 1 ? buildOne(sources[0]) : buildAll(sources);
        report.changes.mark(run);
        return run;
    }

    /// The part that a node is in; undefined for the root of several.
    function partOf(run, node) {
        return run.parts.find((part) => node.id >= part.node.id && node.id <= part.node.end);
    }

    /// The key that the node has in its own run.
    function keyIn({ node: root }, node) {
        return root.key && node.key.startsWith(root.key)
            ? node.key.slice(root.key.length + 1)
            : node.key;
    }

    /// The location of the suite that a node is in.
    function baseOf(run, node) {
        const part = partOf(run, node);
        return part ? part.node.raw.uri : undefined;
    }

    function testCasesIn(run, node) {
        return run.testCases.filter((one) => one.id >= node.id && one.id <= node.end);
    }

    report.shown = { build, partOf, keyIn, baseOf, testCasesIn };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
