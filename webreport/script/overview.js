// What is shown of a run as a whole.
(function (report) {
    'use strict';

    const { element, growingList } = report.dom;
    const { count, counted, duration } = report.format;
    const { outcomeIcon, extraBadges, nodeTitle } = report.marks;
    const slowestShown = 8;

    function testLink(app, node) {
        const time = node.duration === null ? '' : duration(node.duration);
        return element('a', { class: 'testlink', href: app.addressOf(app.run, node) }, outcomeIcon(node),
            element('span', { class: 'name' }, nodeTitle(node)), extraBadges(node), element('span', { class: 'time' }, time));
    }

    function testList(app, title, tests) {
        if (tests.length === 0)
            return null;
        return element('section', { class: 'block' }, element('h2', null, title, ' ', element('span', { class: 'count' }, count(tests.length))),
            growingList(tests, (node) => testLink(app, node), 50, { class: 'links' }));
    }

    function verdict(app) {
        const failed = app.run.testCases.filter(report.model.isFailed).length;
        const total = app.run.testCases.length;
        if (total === 0)
            return report.model.isFailed(app.run.root) ? 'Nothing ran to its end.' : 'No test case ran.';
        if (failed === 0)
            return total === 1 ? 'The test case passed.' : 'All ' + count(total) + ' test cases are well.';
        return count(failed) + ' of ' + counted(total, 'test case', 'test cases') + ' failed.';
    }

    function resultCounts(app) {
        const counts = app.run.root.counts;
        const kinds = report.outcomes.entryKinds.filter((kind) => counts[kind.key]);
        return element('dl', { class: 'counts' }, kinds.map((kind) => element('div', null,
            element('dt', null, report.dom.icon(kind.icon), counts[kind.key] === 1 ? kind.label : kind.plural),
            element('dd', null, count(counts[kind.key])))));
    }

    function slowest(tests) {
        return tests.filter((node) => node.duration >= 1000).sort((a, b) => b.duration - a.duration).slice(0, slowestShown);
    }

    function lostNotice(run) {
        return run.ended ? null : element('p', { class: 'notice' }, 'This run did not end: it was killed, or the machine went down. '
            + 'What had been written until then is here; what was running is marked "not ended".');
    }

    function runFailures(run) {
        const failures = (counts) => (counts.failed || 0) + (counts.error || 0) + (counts.unfinished || 0);
        return failures(report.model.outcomeCounts(run));
    }

    function runRow(app, run) {
        const failed = runFailures(run);
        const time = run.root.duration;
        return element('tr', { 'aria-current': run === app.run ? 'true' : null },
            element('td', null, element('a', { href: app.addressOf(run, null) }, 'Run ' + (run.index + 1))),
            element('td', null, report.format.dateTime(run.root.raw.start)),
            element('td', null, outcomeIcon(run.root), ' ', failed > 0 ? count(failed) + ' failed' : report.marks.outcomeOf(run.root).label),
            element('td', { class: 'number' }, count(run.testCases.length)),
            element('td', { class: 'number' }, time === null ? '' : duration(time)));
    }

    function runsTable(app) {
        if (app.runs.length < 2)
            return null;
        const heads = ['Run', 'Started', 'Outcome', 'Test cases', 'Took'];
        const latest = [...app.runs].reverse().slice(0, 30);
        return element('section', { class: 'block' }, element('h2', null, 'Runs'), element('div', { class: 'scroll' },
            element('table', { class: 'runs' }, element('thead', null, element('tr', null, heads.map((head) => element('th', { scope: 'col' }, head)))),
                element('tbody', null, latest.map((run) => runRow(app, run))))));
    }

    function overview(app) {
        const tests = app.run.testCases;
        const failed = tests.filter(report.model.isFailed);
        const raw = app.run.root.raw;
        return [
            element('p', { class: 'verdict' }, verdict(app)),
            lostNotice(app.run),
            raw.summary ? element('p', { class: 'summary' }, raw.summary) : null,
            raw.description ? report.textBlock(raw.description, 'description') : null,
            resultCounts(app),
            testList(app, 'Newly failing', failed.filter((node) => node.isNew)),
            testList(app, 'Failing', failed.filter((node) => !node.isNew)),
            testList(app, 'Flaky', tests.filter((node) => node.outcome === 'flaky')),
            tests.length > 1 ? testList(app, 'Slowest', slowest(tests)) : null,
            runsTable(app),
        ];
    }

    report.overview = overview;
})(globalThis.morvexReport = globalThis.morvexReport || {});
