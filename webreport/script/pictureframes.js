// Frames round what differs in two pictures, by what the report keeps of it beside the one found: a
// page that was opened from a file may not read pictures.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { counted, locationLink } = report.format;

    const load = report.scriptBeside('morvexPictureDifference');

    function frameOf([left, top, width, height], { naturalWidth, naturalHeight }) {
        const frame = element('span', { class: 'frame' });
        frame.style.left = (100 * left) / naturalWidth + '%';
        frame.style.top = (100 * top) / naturalHeight + '%';
        frame.style.width = (100 * width) / naturalWidth + '%';
        frame.style.height = (100 * height) / naturalHeight + '%';
        return frame;
    }

    /// A promise of what is known of the picture at this location; null when nothing is.
    function differencesOf(uri) {
        return load(locationLink(uri));
    }

    /// Puts frames on both pictures. Returns `{note, middle}`: what is to be said, and where the
    /// largest region is, as shares of width and height; null when nothing differs.
    function frame(found, expected, actual) {
        const { pixels, regions, largest } = found;
        if (pixels === 0) return null;
        for (const { image } of [expected, actual])
            image.after(...largest.map((one) => frameOf(one, image)));
        const [[left, top, width, height]] = largest;
        const { naturalWidth, naturalHeight } = actual.image;
        const text =
            counted(pixels, 'pixel differs', 'pixels differ') +
            ' in ' +
            counted(regions, 'region', 'regions') +
            '.';
        return {
            note: element('p', { class: 'note' }, text),
            middle: {
                x: (left + width / 2) / naturalWidth,
                y: (top + height / 2) / naturalHeight,
            },
        };
    }

    report.pictureFrames = { differencesOf, frame };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
