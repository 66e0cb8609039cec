// The parts of a result as they are shown on the screen.
(function (report) {
    'use strict';

    const { element } = report.dom;

    function video(link, label) {
        const player = element('video', { src: link, controls: true, preload: 'metadata' });
        player.addEventListener('error', () =>
            player.replaceWith(
                element('p', { class: 'note' }, label + ': video not found, or of an unknown form'),
            ),
        );
        return player;
    }

    /// A page that was opened from a file may show its neighbours, but not read them.
    function framedText(link, label) {
        return element('iframe', { class: 'textfile', src: link, title: label });
    }

    function textFile(link, label) {
        if (location.protocol === 'file:')
            return /\.(txt|log)$/i.test(link) ? framedText(link, label) : null;
        const host = element('div', { class: 'textfile' });
        const note = (text) => host.append(element('p', { class: 'note' }, label + text));
        fetch(link)
            .then((answer) => (answer.ok ? answer.text() : Promise.reject(answer)))
            .then((text) => report.dom.append(host, [report.textBlock(text)]))
            .catch(() => note(': file not found'));
        return host;
    }

    /// What entryView asks of the views it is made of. `app` knows how pictures are compared.
    report.screenViews = (app) => ({
        textBlock: report.textBlock,
        valueView: report.valueView.valueView,
        tableView: report.tableView.tableView,
        pictures: (uri) => report.imageCompare(app.pictureView, uri),
        video,
        textFile,
    });
})((globalThis.morvexReport = globalThis.morvexReport || {}));
