'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');
const { repair } = require('./parts');
const { RunBuilder, dataFile, deepStatement, documentText, statement } = require('./testdata');

/// Cut files with what the runner makes of them, as Latin-1.
const cutFiles = JSON.parse(
    fs.readFileSync(path.join(__dirname, '..', 'support', 'cutreports.json'), 'utf8'),
);

function documentsOf(script) {
    return new Function(script + '\nreturn typeof data === "undefined" ? [] : data;')();
}

for (const { name, cut, repaired } of cutFiles)
    test('The page shows the same as the runner repairs in a file with ' + name, () => {
        const read = repair.readDataFile(cut);
        assert.deepEqual(read ? read.runs : [], documentsOf(repaired));
    });

function smallRun(name) {
    const run = new RunBuilder(name);
    run.testCase('tst_"one"', () =>
        run.log('} \\', { detail: '\\' }).section(']"', () => run.pass('inside')),
    );
    run.testCase('tst_two', () => run.skipped('section', 'left out').attach('x-results:/a.png'), {
        retry: { count: 0, max: 1 },
    });
    return run.finish();
}

/// All nodes in the order of the document, without what is in them or came with their end.
function flatten(tests, depth = 0) {
    return tests.flatMap((node) => {
        const own = { ...node, depth };
        delete own.tests;
        if (node.tests) delete own.stop;
        return [own, ...flatten(node.tests || [], depth + 1)];
    });
}

test('A file cut at any byte keeps the runs before, and of the last the whole nodes', () => {
    const first = smallRun('suite_first');
    const last = smallRun('suite_last');
    const before = dataFile([first]);
    const text = before + statement(last);
    const whole = flatten(last.tests);
    let most = 0;
    for (let cut = before.length + 1; cut < text.length - 4; ++cut) {
        const { runs, repaired } = repair.readDataFile(text.slice(0, cut));
        const nodes = flatten(runs[1].tests);
        const isEnded = Boolean(runs[1].tests[0] && 'stop' in runs[1].tests[0]);
        assert.deepEqual([runs[0], repaired], [first, [1]], 'cut at ' + cut);
        assert.deepEqual(nodes, whole.slice(0, nodes.length), 'cut at ' + cut);
        assert.ok(nodes.length >= most, 'a longer file shows less, cut at ' + cut);
        assert.equal('ended' in runs[1], !isEnded, 'cut at ' + cut);
        most = nodes.length;
    }
    assert.equal(most, whole.length);
});

test('Sections nested by the thousand are read, and closed where they are cut', () => {
    const depth = 5000;
    const whole = 'var data = [];\n' + deepStatement(depth);
    for (const [text, repaired] of [
        [whole, []], [whole.slice(0, whole.indexOf('innermost')), [0]],
    ]) {
        const read = repair.readDataFile(text);
        let levels = 0;
        for (let node = read.runs[0].tests[0]; node; ++levels)
            node = node.tests.find((one) => one.tests);
        assert.deepEqual([read.repaired, levels], [repaired, depth + 2]);
    }
});

test('The file of a JSON report is read, a file of another kind refused', () => {
    assert.equal(repair.readDataFile(documentText(smallRun('suite'))).runs.length, 1);
    for (const text of ['hello', '<html></html>', '{"a":1}', 'PK\u0003\u0004'])
        assert.equal(repair.readDataFile(text), null);
});
