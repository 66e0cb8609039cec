// The picture that was found beside the one that was expected. The two are laid over each other by
// the style sheet: reading their pixels is not allowed to a page opened from a file.
(function (report) {
    'use strict';

    const { element, button } = report.dom;
    const { missing, sizeNote, toOneScale, urisOf, figuresOf } = report.pictures;

    const modes = [
        { key: 'slider', label: 'Slider' },
        { key: 'side', label: 'Side by side' },
        { key: 'difference', label: 'Difference' },
        { key: 'marked', label: 'Marked' },
    ];
    const zooms = [
        { key: 1, label: 'Fit' },
        { key: 2, label: '2×' },
        { key: 4, label: '4×' },
        { key: 8, label: '8×' },
    ];

    // In pixels; below it two captions don't fit beside each other.
    const narrowest = 320;

    function setLine(stage, wipe, percent) {
        wipe.value = percent;
        stage.style.setProperty('--wipe', wipe.value + '%');
    }

    function slider(stage) {
        const input = element('input', {
            'type': 'range',
            'min': '0',
            'max': '100',
            'step': '0.5',
            'value': '50',
            'class': 'wipe',
            'aria-label': 'How much of the expected picture is shown',
            'oninput': () => setLine(stage, input, input.value),
        });
        stage.append(input);
        return input;
    }

    /// Scrolls so that the line of the slider stays in view, and the height one had looked at.
    function showLine(box, wipe, height) {
        box.scrollLeft = (box.scrollWidth * wipe.value) / 100 - box.clientWidth / 2;
        box.scrollTop = box.scrollHeight * height - box.clientHeight / 2;
    }

    function heightInView(box) {
        return (box.scrollTop + box.clientHeight / 2) / Math.max(1, box.scrollHeight);
    }

    function choice(label, options, choose) {
        return element(
            'div',
            { 'class': 'segmented', 'role': 'group', 'aria-label': label },
            options.map((one) =>
                button(one.label, () => choose(one.key), { 'data-key': String(one.key) }),
            ),
        );
    }

    function press(group, key) {
        for (const one of group.children)
            one.setAttribute('aria-pressed', String(one.dataset.key === String(key)));
    }

    function applyZoom(pictures, stage, zoom) {
        const width = toOneScale(pictures, stage, zoom);
        stage.classList.toggle('zoomed', zoom > 1);
        stage.classList.toggle('small', width < narrowest);
    }

    /// Both pictures, with the ways to compare them. The choice holds for the next pictures too.
    /// `difference` is the picture of their differences, or null; for `found` see pictureFrames.
    function comparison(view, expected, actual, difference, found) {
        const stage = element('div', null, expected.node, actual.node, difference?.node);
        const offered = modes.filter(({ key }) => difference || key !== 'marked');
        const look = { class: 'pictures', tabindex: '0', role: 'group' };
        const box = element('div', { ...look, 'aria-label': 'Both pictures' }, stage);
        const wipe = slider(stage);
        const modeChoice = choice('How to compare', offered, (mode) => use({ mode }));
        const zoomChoice = choice('Zoom', zooms, (zoom) => use({ zoom }));
        const stronger = button('Stronger', () => use({ strong: !view.strong }), {
            class: 'toggle',
            title: 'Makes small differences bright',
        });
        function use(change) {
            Object.assign(view, change);
            const mode = offered.some(({ key }) => key === view.mode) ? view.mode : 'slider';
            stage.className = 'stage ' + mode + (view.strong ? ' strong' : '');
            wipe.hidden = mode !== 'slider';
            stronger.hidden = mode !== 'difference';
            stronger.setAttribute('aria-pressed', String(view.strong));
            press(modeChoice, mode);
            press(zoomChoice, view.zoom);
            const height = heightInView(box);
            applyZoom([expected, actual], stage, view.zoom);
            if ('zoom' in change) showLine(box, wipe, height);
        }
        use({});
        const framed = found && report.pictureFrames.frame(found, expected, actual);
        const middle = framed ? framed.middle : { x: 0.5, y: 0.5 };
        setLine(stage, wipe, 100 * middle.x);
        report.whenShown(box, () => showLine(box, wipe, middle.y));
        return [
            element('div', { class: 'ways' }, modeChoice, zoomChoice, stronger),
            sizeNote(expected, actual),
            framed ? framed.note : null,
            box,
        ];
    }

    function arranged(view, uris, expected, actual, difference, found) {
        if (expected.there && actual.there)
            return comparison(view, expected, actual, difference, found);
        if (!expected.there && !actual.there) return missing('Actual', uris.actual);
        const shown = expected.there
            ? [expected.node, missing('Actual', uris.actual)]
            : [actual.node];
        return element('div', { class: 'stage ' + (expected.there ? 'side' : 'alone') }, shown);
    }

    /// `uri` is the location of the picture found; `view` is `{mode, zoom, strong}`, and changed by
    /// what is chosen.
    function imageCompare(view, uri) {
        const uris = urisOf(uri);
        const { expected, actual, difference } = figuresOf(uris);
        const box = element('div', { class: 'images' });
        const all = [expected, actual, difference];
        const found = uris.expected && report.pictureFrames.differencesOf(uri);
        Promise.all([...all.map((one) => one && one.isThere), found]).then((there) => {
            const content = arranged(
                view,
                uris,
                { ...expected, there: there[0] },
                { ...actual, there: there[1] },
                there[2] ? difference : null,
                there[3],
            );
            report.dom.append(box, [content]);
        });
        return box;
    }

    report.imageCompare = imageCompare;
})((globalThis.morvexReport = globalThis.morvexReport || {}));
