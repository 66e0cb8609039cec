'use strict';

const assert = require('node:assert/strict');
const test = require('node:test');
const { repair } = require('./parts');
const { RunBuilder, dataFile, documentText, statement, tableRow } = require('./testdata');

const hostile =
    'quote " backslash \\ braces }]{[ data.push( {"version" "tests":[ \u{1F600} \\" end\\';

function smallRun(name = 'suite_a') {
    const run = new RunBuilder(name);
    run.testCase('tst_"one"', () =>
        run.log(hostile, { detail: '\\' }).section(hostile, () => run.pass('inside')),
    );
    run.testCase(
        'tst_two',
        () =>
            run
                .verify('FAIL', 'table', {
                    type: 'tableVerificationResult',
                    tablediff: [tableRow('deletion', 0, [hostile, '"tests":['])],
                })
                .skipped('section', 'left out')
                .attach('x-results:/a.png'),
        { retry: { count: 0, max: 1 } },
    );
    return run.finish();
}

/// All nodes in the order of the document, without what lies below them or came with their end.
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
        assert.deepEqual(runs[0], first, 'cut at ' + cut);
        assert.deepEqual(repaired, [1], 'cut at ' + cut);
        const nodes = flatten(runs[1].tests);
        assert.deepEqual(nodes, whole.slice(0, nodes.length), 'cut at ' + cut);
        assert.ok(nodes.length >= most, 'a longer file shows less, cut at ' + cut);
        assert.equal(
            'ended' in runs[1],
            !(runs[1].tests[0] && 'stop' in runs[1].tests[0]),
            'cut at ' + cut,
        );
        most = nodes.length;
    }
    assert.equal(most, whole.length);
});

test('A node that is whole is not lost with the cut one behind it', () => {
    const text = documentText(smallRun());
    const readUpTo = (end) =>
        flatten(
            repair.readDataFile('var data = [];\ndata.push( ' + text.slice(0, end)).runs[0].tests,
        );
    const logEnd = text.indexOf('}', text.indexOf('"type":"msg"')) + 1;
    assert.equal(readUpTo(logEnd).length, 3);
    assert.equal(readUpTo(logEnd - 1).length, 2);
});

test('A run whose end is in the file counts as ended, though its statement is cut', () => {
    const text = dataFile([smallRun()]);
    const behindStop = text.lastIndexOf('"stop"') + '"stop":"2026-03-02T22:00:00Z"'.length;
    const readUpTo = (end) => repair.readDataFile(text.slice(0, end)).runs[0];
    assert.deepEqual(readUpTo(behindStop), smallRun());
    assert.equal(readUpTo(behindStop - 1).ended, false);
});

const files = [
    ['a whole file', dataFile([smallRun(), smallRun()]), 2, []],
    [
        'a run behind one that was cut within a text',
        dataFile([smallRun()]).slice(0, 700) + statement(smallRun()),
        2,
        [0],
    ],
    ['a cut in front of the results', 'var data = [];\ndata.push( {"version":{"major":1', 1, [0]],
    ['a cut within the call', dataFile([smallRun()]) + 'data.pu', 2, [1]],
    ['a cut within the first line', 'var da', 1, [0]],
    ['zeros behind the end', dataFile([smallRun()]) + '\0\0\0', 1, []],
    ['the file of a JSON report', documentText(smallRun()), 1, []],
];

for (const [name, text, count, repaired] of files) {
    test('Reading finds all runs in ' + name, () => {
        const read = repair.readDataFile(text);
        assert.equal(read.runs.length, count);
        assert.deepEqual(read.repaired, repaired);
        for (const run of read.runs) assert.ok(Array.isArray(run.tests));
    });
}

test('A file of another kind is refused', () => {
    for (const text of ['', 'hello', '<html></html>', '{"a":1}', 'PK\u0003\u0004'])
        assert.equal(repair.readDataFile(text), null);
});
