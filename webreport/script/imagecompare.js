// The picture that was found beside the one that was expected. The two are laid over each other by
// the style sheet: reading their pixels is not allowed to a page opened from a file.
(function (report) {
    'use strict';

    const { element, button } = report.dom;

    const modes = [
        { key: 'slider', label: 'Slider' },
        { key: 'side', label: 'Side by side' },
        { key: 'difference', label: 'Difference' },
    ];

    // The choice holds for the next picture too.
    let chosen = 'slider';

    /// A verification keeps the expected picture under the same number; null for another name.
    function expectedBeside(link) {
        const match = /^(.*\/)?failed_(\d+)\.png$/.exec(link);
        return match ? (match[1] || '') + 'expected_' + match[2] + '.png' : null;
    }

    function figure(label, className, link) {
        const image = element('img', { src: link, alt: label + ' picture', loading: 'lazy' });
        const anchor = element('a', { href: link, target: '_blank', rel: 'noopener' }, image);
        return {
            image,
            node: element(
                'figure',
                { class: className },
                element('figcaption', null, label),
                anchor,
            ),
        };
    }

    function slider(stage) {
        const input = element('input', {
            'type': 'range',
            'min': '0',
            'max': '100',
            'value': '50',
            'class': 'wipe',
            'aria-label': 'How much of the expected picture is shown',
            'oninput': () => stage.style.setProperty('--wipe', input.value + '%'),
        });
        stage.style.setProperty('--wipe', '50%');
        return input;
    }

    function modeButtons(choose) {
        const buttons = modes.map((mode) =>
            button(mode.label, () => choose(mode.key), { 'data-mode': mode.key }),
        );
        return element(
            'div',
            { 'class': 'segmented', 'role': 'group', 'aria-label': 'How to compare' },
            buttons,
        );
    }

    /// `link` is that of the picture found. Without an expected picture it stands alone.
    function imageCompare(link) {
        const expectedLink = expectedBeside(link);
        const failed = figure('Actual', 'actual', link);
        const stage = element('div', { class: 'stage alone' }, failed.node);
        const box = element('div', { class: 'images' }, stage);
        failed.image.addEventListener('error', () => {
            box.replaceChildren(
                element(
                    'p',
                    { class: 'note' },
                    'The picture ' + report.format.locationText(link) + ' is not there.',
                ),
            );
        });
        if (!expectedLink) return box;
        const expected = figure('Expected', 'expected', expectedLink);
        expected.image.loading = 'eager';
        expected.image.addEventListener('load', () => addComparison(box, stage, expected));
        return box;
    }

    function addComparison(box, stage, expected) {
        const wipe = slider(stage);
        const buttons = modeButtons(choose);
        function choose(mode) {
            chosen = mode;
            stage.className = 'stage ' + mode;
            wipe.hidden = mode !== 'slider';
            for (const one of buttons.children)
                one.setAttribute('aria-pressed', String(one.dataset.mode === mode));
        }
        stage.prepend(expected.node);
        box.prepend(buttons);
        box.append(wipe);
        choose(chosen);
    }

    report.imageCompare = { imageCompare, expectedBeside };
})((globalThis.morvexReport = globalThis.morvexReport || {}));
