'use strict';

const assert = require('node:assert/strict');
const { after, before, describe, test } = require('node:test');
const { summary } = require('./parts');
const { Workshop, missing } = require('./runner');
const { shownOf } = require('./testdata');

const night = 'const night = Number(env("NIGHT"));\n';
const connect = night + 'log.error("Cannot connect to 10.0.0." + night + ":" + (8000 + night));';

function scriptsOf(number) {
    const scripts = {
        tst_connect_a: connect,
        tst_connect_b: connect.replace(/\);$/, ` + ' (Screenshot in "/shots/b.png")');`),
        tst_other: 'check.equal(1, 2, "The sum");',
        tst_new: night + 'check.that(night < 2, "Held until night " + night);',
        tst_fixed: night + 'check.that(night > 1, "Mended");',
        tst_switches: night + 'check.that(night % 2 === 1, "Every second time");',
        tst_z_last: 'check.pass("At the end");',
    };
    if (number > 1) scripts.tst_added = 'check.pass("There since the second night");';
    else scripts.tst_gone = 'check.pass("Not for long");';
    return scripts;
}

const names = (nodes) => nodes.map((node) => node.name || node.raw.name).sort();

describe('Nights', { skip: missing || false }, () => {
    const workshop = new Workshop();
    let all;
    let second;

    before(() => {
        for (const number of [1, 2, 3]) {
            workshop.suite('suite_shop', scriptsOf(number));
            workshop.suite('suite_bank', { tst_bank: connect });
            workshop.run('suite_shop', number);
            workshop.run('suite_bank', number);
        }
        all = workshop.documents();
        second = shownOf(all.slice(0, 4));
    });
    after(() => workshop.remove());

    const findings = (run) => summary.of(run, run.root);

    test('The latest run of each suite is shown as one, with a line for all', () => {
        assert.deepEqual(names(second.root.children), ['suite_bank', 'suite_shop']);
        assert.equal(
            summary.line(findings(second)),
            '6 failed, 4 causes, 2 new, 1 fixed, 0 flaky, 1 not in this run',
        );
        assert.equal(shownOf(all.slice(0, 1)).root.name, 'suite_shop');
    });

    test('Failures of one message at one place are one cause, which knows since when', () => {
        const [first, ...others] = findings(second).causes;
        assert.deepEqual(names(first.testCases), ['tst_bank', 'tst_connect_a', 'tst_connect_b']);
        assert.equal(first.since.index, 0);
        const sinceOf = others.map(({ testCases, since }) => [testCases[0].name, since.index]);
        assert.deepEqual(Object.fromEntries(sinceOf), {
            tst_new: 2, tst_other: 0, tst_switches: 2,
        });
    });

    test('What changed since the run before is known of each test case', () => {
        const { newlyFailing, fixed, added, missing: left } = findings(second);
        assert.deepEqual(names(newlyFailing), ['tst_new', 'tst_switches']);
        assert.deepEqual(
            [names(fixed), names(added), names(left)],
            [['tst_fixed'], ['tst_added'], ['tst_gone']],
        );
        // In a first run all is, which says nothing.
        assert.deepEqual(findings(shownOf(all.slice(0, 1))).added, []);
    });

    test('What fails every second time is flaky, and what failed once is not', () => {
        workshop.run('suite_shop', 4);
        const run = shownOf(workshop.documents());
        const flaky = findings(run).flaky.map((node) => [node.name, node.flakiness]);
        assert.deepEqual(flaky, [['tst_switches', { flaky: 2, ran: 4 }]]);
    });

    test('A rerun keeps the marks, and what a run did not get to is said', () => {
        workshop.run('suite_shop', 5, '--stop-on-fail', '--skip', 'tst_added');
        const stopped = shownOf(workshop.documents());
        const left = findings(stopped).missing.filter((one) => one.isSaid);
        assert.equal(left.length, 6);
        assert.match(summary.line(findings(stopped)), /6 did not run$/);
        workshop.run('suite_bank', 1);
        workshop.suite('suite_shop', { ...scriptsOf(5), tst_z_last: 'check.fail("Now broken");' });
        workshop.run('suite_shop', 6);
        workshop.run('suite_shop', 6, '--rerun-failed');
        const rerun = shownOf(workshop.documents());
        assert.deepEqual(names(findings(rerun).newlyFailing), ['tst_z_last']);
        assert.ok(findings(rerun).missing.length === 0);
        assert.doesNotMatch(summary.line(summary.of(rerun, rerun.root.children[0])), /run$/);
        // The latest run before that is no rerun counts.
        workshop.run('suite_shop', 7, '--testcase', 'tst_new');
        const lacking = findings(shownOf(workshop.documents())).missing;
        assert.equal(lacking.length, 7);
    });
});
