'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const tools = require('./browser');
const { picture, shopRuns } = require('./demo');
const { RunBuilder, dataFile, tableRow } = require('./testdata');

const { block, eventually, heading, row, texts, use } = tools;
const failedImages = 'suite_shop/tst_catalogue/Basket/failedImages';
const pictureFailure = '#run=3&at=tst_catalogue/Prices/!2';
const many = (length, make) => Array.from({ length }, (unused, index) => make(index));
const note = (page) => block(page, 'Values').locator('.note').textContent();

tools.describePages('The details', ({ report, onPage, onRuns, onServer, onShop, shop }) => {
    const oneTest = (body) => [new RunBuilder('suite_one').testCase('tst', body).finish()];

    test('Markup in a message stays text', () =>
        onShop('#run=3&at=tst_markup/!0', async (page) => {
            assert.ok((await heading(page)).includes('<b>bold</b> & </script>'));
            assert.equal(await page.locator('#detail img, #detail b, #tree b').count(), 0);
            assert.doesNotMatch(await page.title(), /broken/);
        }));

    test('A difference far down in long values is in view, and both are read together', async () => {
        const inView = (marks) =>
            marks.map((mark) => {
                const box = mark.closest('pre').getBoundingClientRect();
                const { top } = mark.getBoundingClientRect();
                return top >= box.top && top < box.bottom;
            });
        for (const [amount, line] of [[500, '401'], [9000, '8,901']]) {
            const value = (word) =>
                many(amount, (at) => 'line ' + at + (at === amount - 100 ? word : '')).join('\n');
            const values = { expectedValue: value(' old'), actualValue: value(' new') };
            await onRuns(
                oneTest((run) => run.fail('x', values)),
                '#at=tst/!0',
                async (page) => {
                    const marks = page.locator('.values mark');
                    await eventually(() => marks.evaluateAll(inView), [true, true]);
                    assert.match(await note(page), RegExp('difference is in line ' + line + ','));
                    const more = page.getByRole('button', { name: /^Show all/ });
                    if (await more.isVisible()) await more.click();
                    const pre = page.locator('.values pre');
                    await pre.last().evaluate((one) => (one.scrollTop = 77));
                    const tops = () => pre.evaluateAll((all) => all.map((one) => one.scrollTop));
                    await eventually(tops, [77, 77]);
                },
            );
        }
    });

    test('Table differences are a table that begins where it differs', async () => {
        await onShop('#run=3&at=tst_catalogue/Prices/!1', async (page) => {
            assert.equal(await page.locator('.tablediff tbody tr').count(), 5);
            const swatch = page.locator('.swatch');
            const color = await swatch.evaluate((one) => getComputedStyle(one).backgroundColor);
            assert.equal(color, 'rgb(255, 221, 221)');
        });

        const cells = (text) => many(30, (at) => (at === 20 ? text : 'x'));
        const tablediff = ['deletion', 'insertion'].map((kind) => tableRow(kind, 0, cells(kind)));
        await onRuns(
            oneTest((run) => run.fail('Wide', { tablediff })),
            '#at=tst/!0',
            (page) =>
                eventually(async () => {
                    const inner = await page.locator('td.differs').first().boundingBox();
                    const outer = await page.locator('#detail .scroll').boundingBox();
                    return inner.x >= outer.x && inner.x + inner.width <= outer.x + outer.width;
                }, true),
        );
    });

    test('The failed picture is compared with the one beside it in three ways', () =>
        onShop(pictureFailure, async (page) => {
            const [note] = await texts(page, '.images > .note');
            assert.equal(note, '7,200 pixels differ in 2 regions.');
            assert.equal(await page.locator('.frame').count(), 4);
            assert.equal(await page.getByRole('slider').inputValue(), '41.5');
            await use(page, 'Slider');
            const tops = await page
                .locator('.stage .picture, .stage .wipe')
                .evaluateAll((all) => all.map((one) => one.getBoundingClientRect().top));
            assert.equal(new Set(tops).size, 1, 'the slider is over the pictures');
            await use(page, 'Difference');
            const blendMode = (one) => getComputedStyle(one).mixBlendMode;
            const actual = page.locator('.stage .actual .picture');
            assert.equal(await actual.evaluate(blendMode), 'difference');
            await use(page, 'Side by side');
            assert.equal(await page.getByRole('slider').isVisible(), false);
            const shown = (all) => all.map((one) => one.src.split('/').pop() + one.naturalWidth);
            const images = await page.locator('.stage img').evaluateAll(shown);
            assert.deepEqual(images, ['expected_1.png480', 'failed_1.png480']);
            await use(page, '8×');
            await page.locator('.pictures').focus();
            await page.keyboard.press('ArrowDown');
            assert.match(await heading(page), /Screenshot comparison/);
        }));

    test('Neither picture shows through the other when they differ in size', async () => {
        const directory = report(dataFile(shopRuns()));
        fs.writeFileSync(path.join(directory, failedImages, 'failed_1.png'), picture('small'));
        const look = async (page) => {
            await use(page, 'Slider');
            const placesOf = (all) =>
                all.map((one) => ({
                    clip: getComputedStyle(one).clipPath,
                    box: JSON.stringify(one.getBoundingClientRect()),
                    scale: one.firstChild.width / one.firstChild.naturalWidth,
                }));
            const pictures = () => page.locator('.stage .picture').evaluateAll(placesOf);
            await page.getByRole('slider').fill('25');
            const [expected, actual] = await pictures();
            assert.equal(expected.clip, 'inset(-1px 75% -1px -1px)');
            assert.equal(actual.clip, 'inset(-1px -1px -1px 25%)');
            assert.equal(expected.box, actual.box);
            assert.ok(Math.abs(expected.scale - actual.scale) < 0.01);
            const sizes = (await texts(page, '.images .note')).join();
            assert.match(sizes, /expected 480 × 270, actual 240 × 100/);
            await page.getByRole('slider').press('Home');
            assert.notEqual((await pictures())[0].clip, expected.clip);
        };
        const viewport = { width: 390, height: 800 };
        await onPage(tools.fileAddress(directory, pictureFailure), look, { viewport });
    });

    test('A picture that is missing leaves the other one to be seen', async () => {
        const cases = [
            ['expected_1.png', 'failed_1.png', /^Actual 480 × 270$/],
            ['failed_1.png', 'expected_1.png', /Actual.*suite_shop.*failed_1.png is not there/],
        ];
        for (const [missing, left, text] of cases) {
            const directory = report(dataFile(shopRuns()));
            fs.rmSync(path.join(directory, failedImages, missing));
            await onPage(tools.fileAddress(directory, pictureFailure), async (page) => {
                await page.locator('.stage img').waitFor();
                assert.match(await page.locator('.stage img').getAttribute('src'), RegExp(left));
                assert.equal(await page.getByRole('button', { name: 'Slider' }).count(), 0);
                assert.match(await page.locator('.images').textContent(), text);
            });
        }
    });

    test('A visual point that failed shows both trees with what differs', async () => {
        const snapshot = 'suite/tst/failedSnapshots/form.xml_1.xml';
        const failure = {
            type: 'visualVerificationResult', failedObjectDump: 'x-results:/' + snapshot,
        };
        const run = new RunBuilder('suite').testCase('tst', (one) => one.fail('Form', failure));
        const directory = report(dataFile([run.finish()]));
        const content = { kind: 'content', name: 'text', expected: '<b>', actual: null };
        const tip = { kind: 'content', name: 'tip', expected: 'a*', actual: 'b' };
        const sizes = { expected: '3 x 2', actual: '4 x 2' };
        const cutOuts = { kind: 'picture', name: '', expectedPicture: 1, actualPicture: 0 };
        const added = { kind: 'structure', name: 'additional', expected: null, actual: 'New' };
        const count = { kind: 'structure', name: 'children', expected: '1: A', actual: '2: A, B' };
        const tree = (...children) => [{ name: 'Order', differences: [count], children }];
        const name = {
            name: 'Name',
            differences: [content, { ...tip, pattern: 'wildcard' }, { ...cutOuts, ...sizes }],
        };
        const button = { name: 'New', class: 'QPushButton', differences: [added] };
        const pictures = ['small', 'shot'].map((one) => picture(one).toString('base64'));
        const trees = { expected: tree(name), actual: tree(name, button), pictures };
        fs.mkdirSync(path.join(directory, path.dirname(snapshot)), { recursive: true });
        fs.writeFileSync(
            path.join(directory, snapshot + '.js'),
            'morvexVisualTrees(' + JSON.stringify(trees) + ');',
        );
        await onServer(directory, '#at=tst/!0', async (page) => {
            const section = (label) => `.visualtrees section:has(h3:text-is("${label}"))`;
            const children = 'structure, children: expected ‘1: A’, actual ‘2: A, B’';
            const changed = [
                'content, text: expected ‘<b>’, actual none',
                'content, tip: expected like ‘a*’, actual ‘b’',
                'picture: expected ‘3 x 2’, actual ‘4 x 2’ExpectedActual',
            ];
            const differing = (label) => texts(page, section(label) + ' .difference');
            await eventually(() => differing('Expected'), [children, ...changed]);
            const additional = 'structure, additional: expected none, actual ‘New’';
            await eventually(() => differing('Actual'), [children, ...changed, additional]);
            const drawn = page.locator(section('Actual') + ' .cutouts canvas');
            const widths = () => drawn.evaluateAll((all) => all.map(({ width }) => width));
            await eventually(widths, [480, 240]);
            assert.equal(await page.getByText('another top element').count(), 0);
        });
        fs.rmSync(path.join(directory, snapshot + '.js'));
        await onPage(tools.fileAddress(directory, '#at=tst/!0'), (page) =>
            page.getByText('The trees of this snapshot are not there.').waitFor(),
        );
    });

    test('Attachments and screenshots are links and thumbnails', () =>
        onShop('#run=3&at=tst_catalogue/!2', async (page) => {
            const thumbnail = () =>
                page.locator('.thumbnail img').evaluate((one) => one.naturalWidth);
            assert.equal(
                await block(page, 'File').locator('p a').getAttribute('href'),
                './suite_shop/tst_catalogue/shot%20%231.png',
            );
            await eventually(thumbnail, 480);
            await page.evaluate(() => (location.hash = '#run=3&at=tst_crash/!1'));
            await eventually(async () => (await texts(page, '.stack li')).length, 3);
            await eventually(thumbnail, 480);
        }));

    test('Copying works with a clipboard and where the browser offers none', async () => {
        const at = '&at=tst_catalogue/Prices/!0';
        for (const offered of [true, false])
            await onServer(shop(), '#run=3' + at, async (page, server, context) => {
                await context.grantPermissions(['clipboard-read', 'clipboard-write']);
                const read = await page.evaluateHandle(async (isOffered) => {
                    const { clipboard } = navigator;
                    await clipboard.writeText('old');
                    if (!isOffered)
                        Object.defineProperty(navigator, 'clipboard', { value: undefined });
                    return () => clipboard.readText();
                }, offered);
                await use(page, 'Copy failure');
                await page.locator('#toast.shown').waitFor();
                const text = await page.evaluate((readText) => readText(), read);
                assert.match(text, /^FAIL: Basket/);
                const address = server.address + '#run=2026-03-03T22:00:00Z' + at;
                assert.ok(text.includes(address), text);
            });
    });

    test('A test case is followed through the runs', () =>
        onShop('', async (page) => {
            await row(page, 'tst_catalogue').click();
            const points = block(page, 'History').locator('.point');
            const said = (all) => all.map((one) => one.getAttribute('aria-label')).slice(1);
            const labels = (await points.evaluateAll(said)).map((one) => one.replace(/,.*:/, ':'));
            assert.deepEqual(labels, ['Run 2 03-02: Failed, 16 s', 'Run 3 03-03: Failed, 16 s']);
            const picked = () => page.locator('#runPicker').inputValue();
            await points.nth(0).click();
            await eventually(picked, '0');
            assert.equal(await heading(page), 'tst_catalogue');
            await page.goBack();
            await eventually(picked, '2');
        }));

    test('A run that ran nothing or was interrupted does not pass for a good one', async () => {
        const empty = new RunBuilder('suite', '2026-01-01T00:00:00Z').finish();
        const open = new RunBuilder('suite', '2026-01-02T00:00:00Z')
            .testCase('tst_a', (one) => one.fail('x'))
            .begin('testcase', 'tst_b')
            .begin('section', 'inner')
            .log('the last words').document;
        await onRuns([empty, open], '', async (page) => {
            const current = page.locator('.runs tr[aria-current]');
            assert.match(await current.innerText(), /2 failed · interrupted/);
            await page.locator('#detail .notice .testlink').click();
            await eventually(() => heading(page), 'inner');
            const last = block(page, 'Last entries').locator('.name');
            assert.deepEqual(await last.allTextContents(), ['the last words']);
            await page.evaluate(() => (location.hash = '#run=1'));
            await page.locator('#detail .marks', { hasText: 'Nothing ran' }).waitFor();
            assert.match(await page.locator('#favicon').getAttribute('href'), /neutral/);
            assert.equal(await page.locator('.chips').count(), 0);
        });
    });
});
