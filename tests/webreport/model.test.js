'use strict';

const assert = require('node:assert/strict');
const test = require('node:test');
const { address, filter, model, repair, runsOf } = require('./parts');
const { shopRuns } = require('./demo');
const { RunBuilder, deepStatement, tableRow } = require('./testdata');

function build(body, name = 'suite_a', index = 0) {
    const run = new RunBuilder(name);
    body(run);
    return model.buildRun(run.finish(), index);
}

const everything = { text: '', tests: new Map(), entries: new Map() };
const select = (run, criteria) => filter.select(run, { ...everything, ...criteria });
const place = (run, at) => address.findNode(run, at);

function outcomes(run) {
    return Object.fromEntries(run.testCases.map((node) => [node.name, node.outcome]));
}

test('The outcome of a test case is the worst of what is in it', () => {
    const run = build((one) => {
        one.testCase('empty', () => {});
        one.testCase('logs', () => one.log('a'));
        one.testCase('warns', () => one.message('WARNING', 'a'));
        one.testCase('expected', () => one.verify('XFAIL', 'a'));
        one.testCase('unexpected', () => one.pass('a').verify('XPASS', 'b'));
        one.testCase('deep', () =>
            one.section('a', () => one.section('b', () => one.fail('c'))).pass('d'),
        );
        one.testCase('both', () => one.fail('a').message('FATAL', 'b'));
        one.testCase('skipped', () => one.skipped('testcase', 'skipped'));
    });
    assert.deepEqual(outcomes(run), {
        empty: 'passed', logs: 'passed', warns: 'passed', expected: 'passed', unexpected: 'failed',
        deep: 'failed', both: 'error', skipped: 'skipped',
    });
    assert.deepEqual(run.root.counts, {
        log: 1, warning: 1, xfail: 1, pass: 2, xpass: 1, fail: 2, error: 1,
    });
});

test('Attempts become one test case, whose last attempt counts', () => {
    const run = build((one) => {
        one.attempt('tst_a', 0, 3, () => one.fail('x'));
        one.attempt('tst_a', 1, 3, () => one.fail('x'));
        one.attempt('tst_a', 2, 3, () => one.pass('x'));
        one.attempt('tst_b', 0, 3, () => one.pass('x'));
        one.attempt('tst_c', 0, 1, () => one.fail('x'));
        one.attempt('tst_c', 1, 1, () => one.fail('x'));
        one.attempt('tst_c', 0, 1, () => one.pass('x'));
    });
    assert.deepEqual(
        run.testCases.map((node) => [node.name, node.outcome, node.children.length]),
        [
            ['tst_a', 'flaky', 3], ['tst_b', 'passed', 1], ['tst_c', 'failed', 2],
            ['tst_c', 'passed', 1],
        ],
    );
    assert.equal(run.attempts, 7);
});

test('A run that broke off is not taken for one that passed', () => {
    const document = new RunBuilder('suite_a')
        .testCase('done', () => {})
        .begin('testcase', 'open')
        .log('a').document;
    const run = model.buildRun(document, 0);
    assert.equal(run.ended, false);
    assert.deepEqual(outcomes(run), { done: 'passed', open: 'unfinished' });
    assert.equal(
        model.buildRun({ version: {}, tests: [], ended: false }, 0).root.outcome,
        'unfinished',
    );
});

test('Each node is found again by its key, with equal names and any characters', () => {
    const run = build((one) => {
        one.testCase('a/b !~@#&=%', () =>
            one.section('x', () => one.log('1')).section('x', () => one.log('2')),
        );
        one.testCase('', () => one.section('\ud800 half', () => one.log('3')));
        one.attempt('tst', 0, 1, () => one.fail('4'));
        one.attempt('tst', 1, 1, () => one.fail('5'));
    });
    assert.equal(new Set(run.nodes.map((node) => node.key)).size, run.nodes.length);
    for (const node of run.nodes) {
        const hash = address.format({ ...everything, run: '', at: node.key });
        assert.equal(place(run, address.parse(hash).at), node);
    }
});

test('An address says all that is shown, broken ones do no harm, and no link is cut short', () => {
    const state = {
        run: '2026-03-03T22:00:00+01:00~2',
        at: 'tst_a/!3',
        text: 'a & "b=#" -\u00e4% (\'*)',
        tests: new Map([['failed', 'only'], ['new', 'not']]),
        entries: new Map([['log', 'not']]),
        slowest: true,
    };
    assert.deepEqual(address.parse(address.format(state)), state);
    assert.doesNotMatch(address.format(state), /['()*]/);
    const broken = ['', '#', '#%', '#q=%E0%A4%A', '#run=-1&run=x', '#tests=-&entries=,', '#at=x/y'];
    const empty = build(() => {});
    for (const hash of broken) assert.equal(place(empty, address.parse(hash).at).key, '');
    const run = build((one) => one.testCase("it's (not)", () => one.section('s', () => {})));
    for (const [hash, name] of [
        ["#at=it's%20(not)/s/!7", 's'], ['#at=it%27s%20%28not%29/t/!7', "it's (not)"],
    ])
        assert.equal(place(run, address.parse(hash).at).name, name);
});

test('A sent address leads to its run also when older runs were cut away', () => {
    const starts = ['2026-03-01', '2026-03-02', '2026-03-03', '2026-03-03'];
    const documents = starts.map((day) => new RunBuilder('a', day + 'T22:00:00+01:00').finish());
    documents.push({ version: {}, tests: [], ended: false });
    const runs = runsOf(documents);
    const sent = (run) =>
        address.parse(address.format({ ...everything, at: '', run: run.key })).run;
    for (const run of runs) assert.equal(address.findRuns(runs, sent(run)).runs[0], run);
    const left = runsOf(documents.slice(1));
    assert.equal(address.findRuns(left, sent(runs[2])).runs[0].document, documents[2]);
    const found = [sent(runs[0]), '', '2', '99'].map((key) => {
        const { runs: all, isThere } = address.findRuns(left, key);
        return all.map((run) => run.index) + ' ' + isThere;
    });
    assert.deepEqual(found, ['3 false', '3 true', '1 true', '3 false']);
});

test('What other runs know of a test is what its own page says', () => {
    const facts = (node) => [node.kind, node.outcome, node.duration, node.unfinished];
    const retriedWithin = new RunBuilder('suite_a').begin('section', 'round');
    retriedWithin.testCase('tst', (run) => run.section('s', () => run.fail('x')));
    retriedWithin.attempt('tst_b', 0, 1, (run) => run.section('s', () => run.fail('x')));
    retriedWithin.attempt('tst_b', 1, 1, (run) => run.section('s', () => run.pass('x')));
    const documents = [...shopRuns(), retriedWithin.document];
    for (const [index, run] of runsOf(documents).entries()) {
        const full = model.buildRun(documents[index], index);
        const tests = full.nodes.filter((node) => node.kind !== 'entry');
        for (const node of tests) assert.deepEqual(facts(run.test(node.key)), facts(node));
        const { cases, failed, ended } = run.summary;
        assert.deepEqual(
            [[...cases.keys()], failed, ended],
            [full.testCases.map((node) => node.key), full.failed, full.ended],
        );
        assert.equal(run.test('nowhere/at all'), undefined);
    }
});

test('Sections nested by the thousand become rows of a list that is deep enough to read', () => {
    const depth = 5000;
    const { runs } = repair.readDataFile('var data = [];\n' + deepStatement(depth));
    const run = model.buildRun(runs[0], 0);
    const sections = run.nodes.filter((node) => node.raw.type === 'section');
    assert.equal(sections.length, depth);
    assert.ok(Math.max(...run.nodes.map((node) => node.depth)) <= 200);
    assert.equal(new Set(run.nodes.map((node) => node.key)).size, run.nodes.length);
    // Rows beside what they are in say so, and still answer for all that is in them.
    const last = sections[depth - 1];
    assert.deepEqual([sections[100].tooDeep, last.tooDeep], [false, true]);
    assert.deepEqual(sections[0].counts, { pass: depth, fail: 1 });
    assert.deepEqual(last.counts, { pass: 1, fail: 1 });
    assert.ok(sections.every((node) => node.outcome === 'failed'));
    assert.equal(runsOf(runs)[0].summary.cases.get('tst_deep').outcome, 'failed');
    const rows = filter.listRows(run, select(run, { text: 'innermost' }), () => true, false);
    assert.equal(rows[rows.length - 1].name, 'innermost');
});

function shownNames(run, criteria) {
    const { shown } = select(run, criteria);
    const nodes = run.nodes.filter((node) => node.parent && shown[node.id]);
    return nodes.map((node) => node.name).join(', ');
}

const filtered = build((one) => {
    one.log('at the suite');
    one.testCase('tst_login', () =>
        one.section('Form', () =>
            one.log('Fill in Name').fail('Button', { detail: 'Timeout after 5 s', lineNo: 48 }),
        ),
    );
    one.testCase('tst_logout', () => one.pass('Button', { lineNo: 0 }));
    one.testCase('tst_shown', () =>
        one
            .attach('x-results:/shot%20%231.png')
            .pass('Table', { tablediff: [tableRow('insertion', 6, ['Gift wrap'])] })
            .pass('Property', { expectedValue: 'blue', vpUri: 'x-testsuite:/points/Sky%20VP' }),
    );
    one.testCase('tst_odd', () => one.verify('XPASS', 'Strange'));
    one.testCase('tst_skip', () => one.skipped('testcase', 'tst_skip'));
});
const mode = (word) => [word.replace('-', ''), word.startsWith('-') ? 'not' : 'only'];
const modes = (text) => new Map(text.split(' ').map(mode));

const loginButton = 'tst_login, Form, Button';
const filterCases = [
    ['a word in a detail', { text: 'timeout' }, loginButton],
    ['a word of the test case and one of the result', { text: 'login button' }, loginButton],
    ['a test case with all that is in it', { text: 'logout' }, 'tst_logout, Button'],
    ['a phrase', { text: '"fill in name"' }, 'tst_login, Form, Fill in Name'],
    ['an unwanted word', { text: 'button -timeout' }, 'tst_logout, Button'],
    [
        'one outcome', { tests: modes('failed') },
        'tst_login, Form, Fill in Name, Button, tst_odd, Strange',
    ],
    [
        'all but one outcome', { tests: modes('-failed -skipped') },
        'at the suite, tst_logout, Button, tst_shown, shot #1.png, Table, Property',
    ],
    [
        'one kind of result', { entries: modes('pass') },
        'tst_logout, Button, tst_shown, Table, Property',
    ],
    [
        'all but one kind of result', { tests: modes('failed'), entries: modes('-log') },
        'tst_login, Form, Button, tst_odd, Strange',
    ],
    ['a search that finds nothing', { text: 'nowhere' }, ''],
    ['a location as it is shown', { text: 'script.js:48' }, loginButton],
    ['a location without a line', { text: '-script.js: button' }, 'tst_logout, Button'],
    ['a file as it is shown', { text: '"shot #1"' }, 'tst_shown, shot #1.png'],
    ['a cell of a table', { text: '"gift wrap"' }, 'tst_shown, Table'],
    ['a value', { text: 'blue' }, 'tst_shown, Property'],
    ['a verification point', { text: '"sky vp"' }, 'tst_shown, Property'],
    ['an outcome by its name', { text: '"unexpected pass"' }, 'tst_odd, Strange'],
    ['all but an outcome by its name', { text: 'button -failed' }, 'tst_logout, Button'],
];

for (const [name, criteria, expected] of filterCases) {
    test('Filtering shows just ' + name, () =>
        assert.equal(shownNames(filtered, criteria), expected),
    );
}

test('A hit within a hit is counted and opened', () => {
    const run = build((one) =>
        one.testCase('tst_login', () => one.section('login form', () => one.log('login').log('x'))),
    );
    const { hits, opened } = select(run, { text: 'login' });
    assert.equal(hits, 3);
    assert.deepEqual(
        run.nodes.filter((node) => opened[node.id]).map((node) => node.name),
        ['suite_a', 'tst_login', 'login form'],
    );
});

test('Rows count among the siblings that are listed', () => {
    const selection = select(filtered, { tests: modes('failed') });
    const [login, , , odd] = filtered.testCases;
    assert.deepEqual(filter.siblings(login, selection, false), { place: 1, count: 2 });
    assert.deepEqual(filter.siblings(odd, selection, false), { place: 2, count: 2 });
});

test('Failures only keeps the test that was running when the run was killed', () => {
    const run = model.buildRun(
        new RunBuilder('suite')
            .testCase('ok', (one) => one.pass('x'))
            .begin('testcase', 'killed')
            .begin('section', 'here')
            .log('x').document,
        0,
    );
    assert.equal(shownNames(run, { entries: modes('fail error xpass') }), 'killed, here');
});

test('Sorting by time leaves the order within a test case alone', () => {
    const run = build((one) => {
        one.testCase('quick', () => one.wait(1)).testCase('slow', () =>
            one.section('a', () => one.wait(1)).section('b', () => one.wait(9)),
        );
    });
    const rows = filter.listRows(run, select(run), () => true, true);
    assert.deepEqual(
        rows.map((node) => node.name),
        ['suite_a', 'slow', 'a', 'b', 'quick'],
    );
});
