'use strict';

const assert = require('node:assert/strict');
const test = require('node:test');
const { changes, failureText, marks, rerunCommand, summary, why } = require('./parts');
const { RunBuilder, shownOf, tableRow } = require('./testdata');

const names = (nodes) => nodes.map((node) => node.name);

test('What came before a failure is found across sections, warnings included', () => {
    const run = new RunBuilder('suite').attempt('tst', 0, 1, (one) => one.fail('Of the first'));
    run.attempt('tst', 1, 1, (one) => {
        one.message('WARNING', 'Slow start');
        one.section('Form', () => ['a', 'b', 'c'].forEach((text) => one.log(text)));
        one.section('Send', () => one.log('d').log('e').fail('Button'));
    });
    const shown = shownOf([run.finish()]);
    const [testCase] = shown.testCases;
    assert.equal(why.failedAttempt(testCase), testCase.children[1]);
    const failure = shown.nodes.find((node) => node.name === 'Button');
    assert.deepEqual(names(why.before(shown, failure)), ['Slow start', 'a', 'b', 'c', 'd', 'e']);
});

test('Times count where whole seconds can measure them', () => {
    const night = (day, seconds) =>
        new RunBuilder('suite', `2026-01-0${day}T00:00:00Z`)
            .testCase('tst', (one) => one.wait(seconds))
            .testCase('quick', (one) => one.wait(day - 1))
            .finish();
    const { testCases } = shownOf([night(1, 10), night(2, 11), night(3, 30)]);
    assert.deepEqual(
        testCases.map((one) => one.usual),
        [10000, null],
    );
    assert.deepEqual(names(changes.slowest(testCases)), ['tst']);
});

test('A run that was interrupted leaves the marks, and the others of the page, as they are', () => {
    const night = (day, body) => {
        const run = new RunBuilder('suite', `2026-01-0${day}T00:00:00Z`);
        body(run);
        return run.finish();
    };
    const whole = (passes) => (run) =>
        run
            .testCase('tst_a', (one) => one.fail('Of a'))
            .testCase('tst_b', (one) => (passes ? one.pass('x') : one.fail('Of b')));
    const cut = night(2, (run) => run.begin('testcase', 'tst_a').log('Waiting'));
    for (const test of [cut.tests[0], cut.tests[0].tests[0]]) delete test.stop;
    const documents = [night(1, whole(true)), { ...cut, ended: false }, night(3, whole(false))];
    const other = new RunBuilder('other').testCase('tst_a', (one) => one.pass('x')).finish();
    const newOnes = ({ testCases }) => names(testCases.filter((one) => one.isNew));
    const last = shownOf(documents);
    assert.deepEqual([last.ended, newOnes(last)], [true, ['tst_b']]);
    const both = shownOf([...documents.slice(0, 2), other]);
    const { causes, missing } = summary.of(both, both.root);
    assert.deepEqual([both.ended, newOnes(both), both.failed], [false, [], 1]);
    assert.deepEqual([causes.map((one) => one.failure), missing[0].key], [[null], 'tst_b']);
    const [{ node }, { node: otherNode }] = both.parts;
    assert.deepEqual([node.unfinished, otherNode.unfinished, otherNode.outcome], [true, false, 'passed']);
});

test('Keys lead from one failing test case, or cause, to the next and round', () => {
    const groups = [['a', 'b'], ['c']];
    const to = (from, by) => why.nextGroup(groups, from, by);
    assert.deepEqual(
        [to(undefined, 1), to(undefined, -1), to('b', 1), to('c', 1), to('a', -1)],
        ['a', 'c', 'c', 'a', 'c'],
    );
    assert.equal(why.nextGroup([], 'a', 1), null);
});

test('A copied failure is short, and shows the first difference with what is round it', () => {
    const text = (word) => 'ä\u{1F600} '.repeat(9000) + word + ' end'.repeat(9000);
    const cells = (word) => Array.from({ length: 300 }, (unused, at) => (at === 200 ? word : 'x'));
    const run = new RunBuilder('suite').testCase('tst', (one) =>
        one
            .fail('Long '.repeat(500), { expectedValue: text('old'), actualValue: text('new') })
            .fail('Table', {
                detail: 'y'.repeat(9000),
                tablediff: ['deletion', 'insertion'].map((kind) => tableRow(kind, 1, cells(kind))),
            }),
    );
    const shown = shownOf([run.finish()]);
    const [testCase, long, table] = shown.nodes.slice(1);
    for (const [node, parts] of [
        [testCase, ['1 more failure]', 'First difference: line 1', 'http://x/']],
        [long, ['old end', 'new end', 'http://x/']],
        [table, ['| deletion |', '| insertion |', 'http://x/']],
    ]) {
        const copied = failureText(shown, node, 'http://x/');
        assert.ok(new TextEncoder().encode(copied).length <= 2048);
        assert.ok(copied.isWellFormed === undefined || copied.isWellFormed());
        for (const part of parts) assert.ok(copied.includes(part), part + ' in ' + copied);
    }
});

test('The command that runs failed test cases again is quoted for a shell', () => {
    const run = new RunBuilder("suite's");
    run.begin('section', 'x').end();
    run.testCase('tst_ok', (one) => one.pass('x'));
    for (const name of ["tst_it's $HOME", 'tst_b']) run.testCase(name, (one) => one.fail('x'));
    const shown = shownOf([run.finish()]);
    const words = "morvexrunner --testcase 'tst_it'\\''s $HOME' --testcase tst_b ";
    assert.equal(rerunCommand(shown, shown.root), words + "'/home/ci/suite'\\''s'");
    assert.equal(rerunCommand(shown, shown.testCases[0]), '');
});

test('Titles hold no paths of a machine', () => {
    const run = new RunBuilder('suite')
        .log("Saved as '/home/ci/my report/failed_1.png' by /usr/bin/tool, see http://x/a/b")
        .attach('file:///home/ci/logs/server.log');
    assert.deepEqual(
        shownOf([run.finish()]).root.children.map((node) => marks.shortTitle(node)),
        ["Saved as '…/failed_1.png' by …/tool, see http://x/a/b", 'server.log'],
    );
});
