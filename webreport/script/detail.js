// The pane beside the list: frame and facts of the chosen node, with the view that fits it.
(function (report) {
    'use strict';

    const { element, button, icon, fileLink, time } = report.dom;
    const { duration } = report.format;
    const { outcomeBadge, extraBadges, typeLabel, shortTitle, nodeTitle, pathOf } = report.marks;

    function breadcrumb(app, node) {
        const above = node.parent ? [app.run.root, ...pathOf(node)] : [];
        return element(
            'nav',
            { 'class': 'path', 'aria-label': 'Where this is' },
            above.map((one) =>
                element(
                    'a',
                    { href: app.addressOf(app.run, one.parent ? one : null) },
                    shortTitle(one, 60),
                ),
            ),
        );
    }

    function facts(rows) {
        return element(
            'dl',
            { class: 'facts' },
            rows
                .filter((row) => row[1])
                .map(([name, value]) =>
                    element('div', null, element('dt', null, name), element('dd', null, value)),
                ),
        );
    }

    function place(app, node) {
        const { uri, lineNo } = node.raw;
        return uri ? fileLink(uri, lineNo, report.shown.baseOf(app.run, node)) : '';
    }

    function testFacts(app, node) {
        const raw = node.raw;
        const last = node.kind === 'attempts' ? node.children[node.children.length - 1].raw : raw;
        return facts([
            ['Duration', node.duration === null ? '' : duration(node.duration)],
            ['Started', time(raw.start)],
            ['Ended', raw.isSkipped ? '' : time(last.stop)],
            ['Location', place(app, node)],
        ]);
    }

    function entryFacts(app, node) {
        const raw = node.raw;
        return facts([
            ['When', time(raw.time)],
            ['Location', node.entryKind === 'attachment' ? '' : place(app, node)],
            ['Object', raw.objectName],
            ['Property', raw.property],
            [
                'Verification point',
                raw.vpUri ? fileLink(raw.vpUri, 0, report.shown.baseOf(app.run, node)) : '',
            ],
        ]);
    }

    function actions(app, node) {
        const failed = report.model.isFailed(node);
        return element(
            'div',
            { class: 'actions' },
            button(
                '',
                () => report.commands.copyFailure(app, node),
                { class: 'copy', title: 'As plain text, for a ticket (c)' },
                icon('copy'),
                failed ? 'Copy failure' : 'Copy',
            ),
            report.rerunCommand(app.run, node)
                ? button(
                      '',
                      () => report.commands.copyRerun(app, node),
                      { class: 'copyrerun', title: 'Runs the failed test cases again (r)' },
                      icon('copy'),
                      'Copy command',
                  )
                : null,
            button(
                '',
                () => report.commands.copyAddress(app, node),
                { class: 'copylink', title: 'The address of this place (l)' },
                icon('link'),
                'Copy link',
            ),
        );
    }

    function heading(app, node) {
        return element(
            'header',
            { class: 'detailhead' },
            element(
                'div',
                { class: 'toprow' },
                button('', () => app.closeDetail(), { class: 'back' }, icon('back'), 'Results'),
                breadcrumb(app, node),
                actions(app, node),
            ),
            element(
                'p',
                { class: 'marks' },
                outcomeBadge(node),
                extraBadges(node),
                node.kind === 'entry' ? null : element('span', { class: 'type' }, typeLabel(node)),
            ),
            element(
                'h1',
                { class: nodeTitle(node).length > 120 ? 'long' : null },
                shortTitle(node),
            ),
        );
    }

    function entryBody(app, node) {
        return [
            entryFacts(app, node),
            report.entryView.entryView(app, node, report.screenViews(app)),
        ];
    }

    function isRun({ run }, node) {
        return !node.parent || run.parts.some((part) => part.node === node);
    }

    function body(app, node) {
        if (node.kind === 'entry')
            return [
                report.model.isFailed(node) ? report.entryView.before(app, node) : null,
                entryBody(app, node),
            ];
        return [
            testFacts(app, node),
            isRun(app, node) ? report.overview(app, node) : report.testView(app, node),
        ];
    }

    function highlight(app, host) {
        report.highlight.clear(host);
        report.highlight.mark(host, app.terms);
    }

    /// `host` is the pane; a part of it is drawn again.
    function render(app, host, node) {
        const place = host.querySelector('#detailBody');
        place.replaceChildren();
        report.dom.append(place, [heading(app, node), body(app, node)]);
        report.highlight.mark(place, app.terms);
    }

    report.detail = { render, highlight, entryFacts, entryBody };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
