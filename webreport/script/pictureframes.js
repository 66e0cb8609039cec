// Frames round what differs in two pictures, where the browser lets a page read them.
(function (report) {
    'use strict';

    const { element } = report.dom;
    const { counted } = report.format;
    const mostFrames = 50;

    // More pixels would keep the page busy for long.
    const mostPixels = 40e6;

    function pixelsOf(image) {
        const { naturalWidth: width, naturalHeight: height } = image;
        const canvas = element('canvas', { width, height });
        const context = canvas.getContext('2d', { willReadFrequently: true });
        context.drawImage(image, 0, 0);
        return new Uint32Array(context.getImageData(0, 0, width, height).data.buffer);
    }

    /// What pixels.compare says; null where pictures of different size, or from a file, give no
    /// answer.
    function differencesOf({ image: expected }, { image: actual }) {
        const { naturalWidth: width, naturalHeight: height } = expected;
        const isSame = width === actual.naturalWidth && height === actual.naturalHeight;
        if (!isSame || width * height > mostPixels) return null;
        try {
            return report.pixels.compare(pixelsOf(expected), pixelsOf(actual), width, height);
        } catch {
            return null;
        }
    }

    function frameOf({ left, top, right, bottom }, { naturalWidth, naturalHeight }) {
        const frame = element('span', { class: 'frame' });
        frame.style.left = (100 * left) / naturalWidth + '%';
        frame.style.top = (100 * top) / naturalHeight + '%';
        frame.style.width = (100 * (right - left)) / naturalWidth + '%';
        frame.style.height = (100 * (bottom - top)) / naturalHeight + '%';
        return frame;
    }

    /// Puts frames on both pictures. Returns `{note, middle}`: what is to be said, and where the
    /// largest region is, as shares of width and height; null when nothing is known.
    function frame(expected, actual) {
        const found = differencesOf(expected, actual);
        if (!found || found.count === 0) return null;
        for (const { image } of [expected, actual])
            image.after(...found.regions.slice(0, mostFrames).map((one) => frameOf(one, image)));
        const [{ left, top, right, bottom }] = found.regions;
        const { naturalWidth, naturalHeight } = actual.image;
        const text =
            (found.count === 1
                ? '1 pixel differs'
                : counted(found.count, '', 'pixels') + ' differ') +
            ' in ' +
            counted(found.regions.length, 'region', 'regions') +
            '.';
        return {
            note: element('p', { class: 'note' }, text),
            middle: {
                x: (left + right) / 2 / naturalWidth,
                y: (top + bottom) / 2 / naturalHeight,
            },
        };
    }

    report.pictureFrames = { frame };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
