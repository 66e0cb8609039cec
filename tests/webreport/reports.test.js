'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { afterEach, beforeEach, describe, test } = require('node:test');
const { runsOf, suites } = require('./parts');
const { Workshop, missing } = require('./runner');
const { dataFile, RunBuilder, statement } = require('./testdata');

describe('Several reports', { skip: missing || false }, () => {
    let workshop;
    beforeEach(() => (workshop = new Workshop()));
    afterEach(() => workshop.remove());

    function write(name, content = 'x', report = workshop.report) {
        const file = path.join(report, name);
        fs.mkdirSync(path.dirname(file), { recursive: true });
        fs.writeFileSync(file, content);
    }
    const append = (run) => fs.appendFileSync(workshop.dataFile(), statement(run));

    const filesIn = (directory) =>
        fs
            .readdirSync(directory, { recursive: true })
            .filter((name) => /txt$|png$/.test(name) && !/^data/.test(name))
            .sort();

    /// A report whose only run names the file, which has the content.
    function reportOf(name, start, file, content, suite = 'suite_a') {
        const report = workshop.path(name);
        const run = new RunBuilder(suite, start).testCase('tst_' + name, (one) =>
            one.attach('x-results:/' + file.split('/').map(encodeURIComponent).join('/')),
        );
        write('data/results-v1.js', dataFile([run.finish()]), report);
        write(file, content, report);
        return report;
    }

    const contentOf = (report, { tests: [run] }) => {
        const [{ uri }] = run.tests[0].tests;
        const file = decodeURIComponent(uri.replace(/^(x-results|file):\/+/, ''));
        const base = uri.startsWith('file') ? '/' : report;
        return fs.readFileSync(path.join(base, file), 'utf8');
    };

    test('Old runs of each suite go with the files that no other run names', () => {
        for (const suite of ['suite_a', 'suite_b'])
            workshop.suite(suite, { tst_a: 'check.pass("x");' });
        assert.equal(workshop.run('suite_b', 1).status, 0);
        const report = workshop.report;
        const shared = (day, own) => {
            const run = new RunBuilder('suite_a', day + 'T00:00:00Z');
            for (const name of ['suite_a/shared.txt', own, '../outside.txt', 'index.html'])
                run.attach('x-results:/' + name);
            return run.finish();
        };
        append(shared('2026-01-01', 'suite_a/tst/failed_1.png'));
        append(shared('2026-01-02', 'suite_a/tst/new/b%C3%A4.txt'));
        const beside = ['tst/failed_1.png.js', 'tst/expected_1.png'];
        const written = ['shared.txt', 'tst/failed_1.png', ...beside, 'tst/new/bä.txt'];
        for (const name of [...written, '../../outside.txt']) write('suite_a/' + name);
        assert.equal(workshop.run('suite_b', 2, '--keep-runs', '1').status, 0);
        const left = runsOf(workshop.documents());
        assert.deepEqual(
            left.map((run) => run.name),
            ['suite_a', 'suite_b'],
        );
        assert.match(left[0].raw.start, /^2026-01-02/);
        assert.deepEqual(filesIn(report), ['suite_a/shared.txt', 'suite_a/tst/new/bä.txt']);
        assert.ok(fs.existsSync(workshop.path('outside.txt')));
        assert.ok(fs.existsSync(path.join(report, 'index.html')));
    });

    test('The list that a killed run left is worked off by what the runs name now', () => {
        workshop.suite('suite_a', { tst_a: 'check.pass("x");' });
        fs.appendFileSync(workshop.path('suite_a', 'suite.conf'), 'KEEP_RUNS = 1\n');
        workshop.run('suite_a', 1);
        write('gone.txt');
        write('named.txt');
        append(new RunBuilder('suite_a').attach('x-results:/named.txt').finish());
        append(new RunBuilder('suite_a').log('x-results:/gone.txt').finish());
        write('data/.removed-files', 'gone.txt\0named.txt\0');
        workshop.run('suite_a', 2);
        assert.deepEqual(filesIn(workshop.report), ['named.txt']);
        // Those of the other place stay, and one of this suite.
        const counts = runsOf(workshop.documents()).map(({ suite }) => suite.runs.length);
        assert.deepEqual(counts, [2, 2, 1]);
    });

    test('Merged reports become one in the order of the runs, with the files of each', () => {
        const file = "suite_a/it's #1/failed_1.png";
        const reports = [
            reportOf('late', '2026-01-02T01:00:00+02:00', file, 'late'),
            reportOf('early', '2026-01-01T22:00:00Z', file, 'early'),
            reportOf('outside', '2026-01-03T00:00:00Z', '../far.txt', 'far'),
            reportOf('lacking', '2026-01-04T00:00:00Z', file, 'lost'),
        ];
        fs.rmSync(path.join(reports[3], file));
        const cut = fs.readFileSync(workshop.dataFile(reports[0]), 'utf8').slice(0, -20);
        fs.writeFileSync(workshop.dataFile(reports[0]), cut);
        const files = () => reports.map(filesIn);
        const before = files();
        const target = workshop.path('merged');
        const { status, text } = workshop.call('--merge-reports', target, ...reports);
        assert.equal(status, 0, text);
        assert.match(text, /far\.txt.*outside of the report/);
        const documents = workshop.documents(target);
        const contents = documents.slice(0, 3).map((one) => contentOf(target, one));
        assert.deepEqual(contents, ['early', 'late', 'far']);
        assert.throws(() => contentOf(target, documents[3]), { code: 'ENOENT' });
        assert.equal(documents[1].ended, false);
        assert.deepEqual(files(), before);
        assert.equal(fs.readFileSync(workshop.dataFile(reports[0]), 'utf8'), cut);
        assert.ok(fs.existsSync(path.join(target, 'index.html')));
        for (const words of [
            [target, reports[0]], [reports[0], ...reports], [workshop.path('new'), 'nowhere'],
            [path.join(reports[0], 'in', 'it'), ...reports],
        ])
            assert.notEqual(workshop.call('--merge-reports', ...words).status, 0);
        assert.ok(!fs.existsSync(workshop.path('new')));
    });

    test('Shards of a run become one run when that is asked for', () => {
        const start = '2026-01-01T00:00:00Z';
        const reports = ['a', 'b'].map((name) => reportOf(name, start, name + '.txt', name));
        reports.push(reportOf('c', start, 'c.txt', 'c', 'suite_other'));
        const target = workshop.path('joined');
        workshop.call('--merge-reports', target, ...reports, '--join-runs');
        const runs = runsOf(workshop.documents(target));
        assert.deepEqual(
            runs.map((run) => [run.name, [...run.summary.cases.keys()], run.summary.ended]),
            [['suite_a', ['tst_a', 'tst_b'], true], ['suite_other', ['tst_c'], true]],
        );
        assert.equal(suites.latestOf(runs).length, 2);
    });
});
