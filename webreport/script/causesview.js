// The failures of a run by their causes.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { count, counted, dateTime, locationText } = report.format;

    const step = 20;

    function titleOf({ failure }) {
        return failure ? report.marks.shortTitle(failure, 200) : 'The run was interrupted';
    }

    /// What a row says below its title: what came out, where, and since when.
    function factsOf(cause) {
        const { failure, since, sources } = cause;
        const isNew = sources.includes(since);
        const hasEarlier = sources.some((source) => report.suites.earlier(source).length > 0);
        const when = isNew
            ? 'new in this run'
            : 'since run ' +
              (since.index + 1) +
              ' (' +
              dateTime(since.raw.start).slice(0, 10) +
              ')';
        return [
            failure ? report.reasonOf(failure) : '',
            failure ? locationText(failure.raw.uri, failure.raw.lineNo) : '',
            hasEarlier ? when : '',
        ].filter(Boolean);
    }

    function row(app, cause) {
        const { failure, testCases } = cause;
        const icon = failure ? report.marks.outcomeIcon(failure) : report.dom.icon('unfinished');
        const amount = counted(testCases.length, 'test case', 'test cases');
        const details = element(
            'details',
            { class: 'cause' },
            element(
                'summary',
                null,
                icon,
                element(
                    'span',
                    { class: 'what' },
                    element('span', { class: 'name' }, titleOf(cause)),
                    element('span', { class: 'reason' }, factsOf(cause).join(' · ')),
                ),
                element('span', { class: 'amount' }, amount),
            ),
        );
        // A run may have thousands of them: they are made when somebody looks.
        const fill = () =>
            report.dom.append(details, [
                report.growingList(testCases, (one) => report.nodeLink(app, one), step, {
                    class: 'links',
                }),
            ]);
        details.addEventListener('toggle', fill, { once: true });
        return details;
    }

    /// Null when nothing failed.
    function causesView(app, { causes }) {
        if (causes.length === 0) return null;
        const rows = report.growingList(causes, (cause) => row(app, cause), step, {
            class: 'causes',
        });
        return element(
            'section',
            { class: 'block' },
            element(
                'h2',
                null,
                'Failures by cause',
                element('span', { class: 'count' }, count(causes.length)),
            ),
            rows,
        );
    }

    report.causesView = { causesView, titleOf, factsOf };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
