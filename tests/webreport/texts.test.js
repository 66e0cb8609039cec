'use strict';

const assert = require('node:assert/strict');
const test = require('node:test');
const {
    failureText, format, highlight, invisibles, tableRows, textDiff, values,
} = require('./parts');
const { RunBuilder, shownOf, tableRow } = require('./testdata');

function marked(segments) {
    return segments.map(({ text, differs }) => (differs ? '[' + text + ']' : text)).join('');
}

const differences = [
    ['', '', '', ''],
    ['same', 'same', 'same', 'same'],
    ['', 'new', '', '[new]'],
    ['one two three', 'one 2 three', 'one [two] three', 'one [2] three'],
    ['1.204,50', '1,204.50', '1[.]204[,]50', '1[,]204[.]50'],
    ['abcdef', 'uvwxyz', '[abcdef]', '[uvwxyz]'],
    ['a\u{1F600}b', 'a\u{1F601}b', 'a[\u{1F600}]b', 'a[\u{1F601}]b'],
    ['aaa', 'aa', 'aa[a]', 'aa'],
    [
        'a: 1\nb: 2\nc: 3', 'a: 1\nnew\nb: 20\nc: 3', 'a: 1\nb: 2\nc: 3',
        'a: 1\n[new\n]b: 2[0]\nc: 3',
    ],
];

function expectMarks({ expected, actual }, left, right) {
    assert.deepEqual([marked(expected), marked(actual)], [left, right]);
}

for (const [expected, actual, left, right] of differences)
    test(`Just the differing characters of "${expected}" and "${actual}" are marked`, () =>
        expectMarks(textDiff.diff(expected, actual), left, right));

test('Marking loses no character of long and wholly different texts', () => {
    const text = (factor) =>
        Array.from({ length: 9000 }, (unused, index) =>
            String.fromCharCode(97 + ((index * index * factor) % 26)),
        ).join('');
    for (const [expected, actual] of [
        [text(3), text(7)], [text(3), text(3).slice(40) + 'tail'],
        ['x'.repeat(100000), 'x'.repeat(99999)],
    ]) {
        const marks = textDiff.diff(expected, actual);
        assert.equal(marks.expected.map((segment) => segment.text).join(''), expected);
        assert.equal(marks.actual.map((segment) => segment.text).join(''), actual);
    }
});

const roughDifferences = [
    ['one two three\nend', 'one 2 three\nend', 'one [two] three\nend', 'one [2] three\nend'],
    ['a\nb\nc\n', 'a\nc\n', 'a\n[b\n]c\n', 'a\nc\n'], ['aaa', 'aa', 'aa[a]', 'aa'],
    ['a\u{1F600}b', 'a\u{1F601}b', 'a[\u{1F600}]b', 'a[\u{1F601}]b'],
    ['a\u{1F600}', 'a\u{2F600}', 'a[\u{1F600}]', 'a[\u{2F600}]'],
];

test('Marks of very long texts cover all that differs, and split no character', () => {
    for (const [expected, actual, left, right] of roughDifferences)
        expectMarks(textDiff.diffRoughly(expected, actual), left, right);
});

test('In a long text with a thousand changes just these are marked', () => {
    const text = (changed) =>
        Array.from(
            { length: 2000 },
            (unused, line) => 'line ' + line + ' is ' + (line % 2 && changed ? 'new' : 'old'),
        ).join('\n');
    const marks = textDiff.diff(text(false), text(true));
    const differing = marks.actual.filter((segment) => segment.differs);
    assert.equal(differing.length, 1000);
    assert.ok(differing.every((segment) => segment.text === 'new'));
});

test('Values that look the same are distinguished', () => {
    const difference = ([expected, actual]) => invisibles.onlyDifference(expected, actual);
    assert.match(difference(['a\u200bb', 'ab']), /seen/);
    assert.match(difference(['one two', 'one\ttwo']), /seen/);
    assert.match(difference(['caf\u00e9', 'cafe\u0301']), /composed/);
    assert.equal(difference(['a b', 'a c']), null);
    assert.deepEqual(invisibles.pieces('a\u0000\u202e b', invisibles.unseen), [
        'a', { symbol: '␀' }, { code: 'U+202E' }, { symbol: '·' }, 'b',
    ]);
});

test('The terms of a search are marked once where they overlap', () => {
    assert.deepEqual(highlight.places('Table tables', ['tab', 'table']), [[0, 5], [6, 11]]);
    assert.deepEqual(highlight.places('İSTANBUL', ['stan']), [[1, 5]]);
});

const comparisons = [
    [{ detail: "Expected 'a', got 'b'." }, 'a', 'b'],
    [{ detail: 'Expected 3, got -4.' }, '3', '-4'],
    [{ detail: 'more', text: "Sum: Expected 'it''s', got ''." }, "it''s", ''],
    [{ detail: "Expected 'two\nlines', got 'a'." }, 'two\nlines', 'a'],
    [{ expectedValue: 'x' }, 'x', ''],
    [{ actualValue: 'y', detail: "Expected 'a', got 'b'." }, '', 'y'],
];

for (const [raw, expected, actual] of comparisons) {
    test('The values are found in ' + JSON.stringify(raw), () =>
        assert.deepEqual(values.comparedValues(raw), { expected, actual }),
    );
}

test('No values are invented', () => {
    for (const raw of [
        {}, { text: 'Expected nothing' }, { detail: "Got expected 'a'." },
        { expectedValue: 'a', actualValue: 'a' },
    ])
        assert.equal(values.comparedValues(raw), null);
});

const stacks = [
    [
        'Message\nclick@x-testsuite:/a.js:3\n@file:///b c.js:9',
        ['Message', 'click x-testsuite:/a.js 3', ' file:///b c.js 9'],
    ],
    [
        'Message\n    at f (/a/b.js:3:14)\n    at /a/c.js:5',
        ['Message', 'f /a/b.js 3', ' /a/c.js 5'],
    ],
    ['tst_a/script.js:3\nshared/x.js:4\n', ['', ' tst_a/script.js 3', ' shared/x.js 4']],
    ['See https://example.org:80', ['See https://example.org:80']],
    ['localhost.local:8080', ['localhost.local:8080']],
];

for (const [detail, expected] of stacks)
    test('The call stack is separated from the text in ' + JSON.stringify(detail), () => {
        const { text, frames } = values.splitStack(detail);
        const shown = frames.map(({ name, file, line }) => [name, file, line].join(' '));
        assert.deepEqual([text, ...shown], expected);
    });

test('A file of a call stack is found in the suite, or on the machine', () => {
    const found = (path, base) => format.locationOfPath(path, base);
    assert.equal(found('/a b/s/tst/x#.js', 'file:///a%20b/s'), 'x-testsuite:/tst/x%23.js');
    assert.equal(found('/a b/s2/x.js', 'file:///a%20b/s'), 'file:///a%20b/s2/x.js');
    assert.equal(found('/tst/x.js', 'x-testsuite:/tst'), 'file:///tst/x.js');
    assert.equal(found('/x.js', undefined), 'file:///x.js');
    assert.equal(found('x-testsuite:/x.js', 'file:///s'), 'x-testsuite:/x.js');
});

test('No location leads to a script or out to a host', () => {
    const links = [
        'javascript:alert(1)', 'x-results:/javascript:alert(1)', 'x-results:////evil.example/a',
        'https://evil.example/', 'data:text/html,x', 'x-results:/', '', undefined,
    ];
    assert.deepEqual(
        links.map((uri) => format.locationLink(uri, 'javascript:alert(1)/')),
        [null, './javascript:alert(1)', './evil.example/a', null, null, null, null, null],
    );
});

test('A changed row of a table comes before its new form, whatever the order of the data', () => {
    const context = { elementType: 'context', diffType: 'cell', diffValue: { row: 0, column: 2 } };
    const rows = tableRows.arrangedRows([
        tableRow('deletion', 1, ['a', '1']), tableRow('deletion', 2, ['b', '2']),
        tableRow('insertion', 1, ['A', '1']), tableRow('insertion', 1, ['extra', '']),
        tableRow('insertion', 5, ['B', '2']), context, tableRow('insertion', 7, ['after', '9']),
        tableRow('deletion', 8, ['before', '9']), { elementType: 'unknown' },
    ]);
    assert.deepEqual(
        rows.map((row) => row.label + ' ' + row.side),
        [
            'Row 2 expected', 'Row 2 actual', 'Row 3 expected', 'Row 6 actual', 'Row 2 actual',
            'Row 1, column 3 both', 'Row 9 expected', 'Row 8 actual', 'Row ? both',
        ],
    );
    assert.equal(rows[4].partner, undefined);
});

test('Rows have the numbers of their own tables, with what was left out between them', () => {
    const [insertion, deletion] = ['insertion', 'deletion'];
    // As the runner numbers 0 1 2 3 4 5 6 -> 0 A B 1 3x C 4 D 6 E.
    const differences = [
        [insertion, 1, 'A'], [insertion, 1, 'B'], [deletion, 2, '2'], [deletion, 3, '3'],
        [insertion, 2, '3x'], [insertion, 3, 'C'], [deletion, 5, '5'], [insertion, 5, 'D'],
        [insertion, 7, 'E'],
    ];
    const textsOf = (rows) =>
        rows.flatMap(({ before, label, cells }) => [...before, label + ' ' + cells[0].text]);
    const data = differences.map(([kind, line, text]) => tableRow(kind, line, [text]));
    assert.deepEqual(textsOf(tableRows.arrangedRows(data)), [
        'Row 1 is equal', ...['Row 2 A', 'Row 3 B'], 'Row 2 is equal (actual 4)',
        ...['Row 3 2', 'Row 5 3x', 'Row 4 3', 'Row 6 C'], 'Row 5 is equal (actual 7)',
        ...['Row 6 5', 'Row 8 D'], 'Row 7 is equal (actual 9)', 'Row 10 E',
    ]);
});

test('A row that moved is paired with its like, not with what is at its number now', () => {
    const rows = tableRows.arrangedRows([
        tableRow('deletion', 0, ['id 0', 'x']), tableRow('deletion', 1, ['id 1', 'y']),
        tableRow('insertion', 0, ['id 1', 'Y']), tableRow('insertion', 1, ['id 2', 'z']),
        tableRow('deletion', 2, ['old']), tableRow('insertion', 2, ['new']),
    ]);
    assert.deepEqual(
        rows
            .filter((row) => row.side === 'expected')
            .map((row) => row.cells[0].text + ' ' + (row.partner && row.partner.cells[0].text)),
        ['id 0 undefined', 'id 1 id 1', 'old new'],
    );
});

test('A copied failure holds what a ticket needs', () => {
    const run = new RunBuilder('suite_a');
    run.testCase('tst_a', () =>
        run.section('Form', () => run.fail('Button', { detail: "Expected 'on', got 'off'." })),
    );
    const built = shownOf([run.finish()]);
    const failure = built.nodes.find((node) => node.entryKind === 'fail');
    const place = 'suite_a › tst_a › Form\n';
    for (const node of [failure, built.testCases[0]]) {
        const text = failureText(built, node, 'http://x/#at');
        for (const part of ['FAIL: Button', place, 'tst_a/script.js:12', 'http://x/#at'])
            assert.ok(text.includes(part), part + ' in ' + text);
        assert.match(text, /Expected: on\nActual:   off/);
        assert.doesNotMatch(text, /got 'off'/);
    }
});

test('Lines and blanks of a copied value survive the way into a ticket', () => {
    const run = new RunBuilder('suite_a').testCase('tst_a', (one) =>
        one.fail('Text', { detail: "Expected 'a\tb \nc', got ''." }),
    );
    const built = shownOf([run.finish()]);
    const text = failureText(built, built.nodes[2], 'http://x/');
    assert.match(text, /Expected:\n {4}a→b \n {4}c\nActual: {3}\(empty\)\n/);
});
