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

    /// What entryView asks of the views it is made of. `app` knows how pictures are compared.
    report.screenViews = (app) => ({
        textBlock: report.textBlock,
        valueView: report.valueView.valueView,
        tableView: report.tableView.tableView,
        pictures: (uri) => report.imageCompare(app.pictureView, uri),
        video,
    });
})((globalThis.morvexReport = globalThis.morvexReport || {}));
