'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const tools = require('./browser');
const { shopRuns } = require('./demo');
const { solidPng } = require('./png');
const { RunBuilder, dataFile, tableRow } = require('./testdata');

const { block, eventually, heading, row, rowNames, texts } = tools;
const failedImages = 'suite_shop/tst_catalogue/Basket/failedImages';
const pictureFailure = '#run=3&at=tst_catalogue/Prices/!2';

tools.describePages('The details', ({ report, onPage, onShop, shop }) => {
    const addressOf = (run) => tools.fileAddress(report(dataFile([run.finish()])));

    test('Markup in a message stays text', () =>
        onShop('#run=3&at=tst_markup/!0', async (page) => {
            assert.ok((await heading(page)).includes('<b>bold</b> & </script>'));
            assert.equal(await page.locator('#detail img, #detail b, #tree b').count(), 0);
            assert.doesNotMatch(await page.title(), /broken/);
        }));

    test('A difference far down in long values is in view, and both are read together', async () => {
        const lines = (amount, changed) =>
            Array.from(
                { length: amount },
                (unused, line) => 'line ' + line + (line === amount - 100 ? changed : ''),
            ).join('\n');
        const failure = (one, amount) =>
            one.fail(amount + ' lines', {
                expectedValue: lines(amount, ' old'),
                actualValue: lines(amount, ' new'),
                detail: 'Not equal',
            });
        const address = addressOf(
            new RunBuilder('suite_long').testCase('tst', (one) =>
                [500, 9000].forEach((amount) => failure(one, amount)),
            ),
        );
        const inView = (page) =>
            page.locator('.values mark').evaluateAll((marks) =>
                marks.map((mark) => {
                    const box = mark.closest('pre').getBoundingClientRect();
                    const { top } = mark.getBoundingClientRect();
                    return top >= box.top && top < box.bottom;
                }),
            );
        for (const [hash, line] of [
            ['#at=tst/!0', '401'],
            ['#at=tst/!1', '8,901'],
        ])
            await onPage(address + hash, async (page) => {
                await eventually(() => inView(page), [true, true]);
                assert.match(
                    await block(page, 'Values').locator('.note').textContent(),
                    RegExp('first difference is in line ' + line + ','),
                );
                const more = page.getByRole('button', { name: /^Show all/ });
                if (await more.isVisible()) await more.click();
                const pre = page.locator('.values pre');
                await pre.last().evaluate((one) => (one.scrollTop = 77));
                const tops = () => pre.evaluateAll((all) => all.map((one) => one.scrollTop));
                await eventually(tops, [77, 77]);
            });
    });

    test('Table differences are a table that begins where it differs', async () => {
        await onShop('#run=3&at=tst_catalogue/Prices/!1', async (page) => {
            const rows = page.locator('.tablediff tbody tr');
            const cellsOf = (all) =>
                all.map((one) => [...one.cells].map((cell) => cell.textContent));
            assert.deepEqual(await rows.evaluateAll(cellsOf), [
                ['Row 2', 'expected', 'Lamp', '2', '79.00#ffdddd'],
                ['Row 2', 'actual', 'Lamp', '3', '118.50'],
                ['Row 5', 'actual', 'Gift wrap', '1', '0.00'],
            ]);
            assert.equal(
                await page
                    .locator('.swatch')
                    .evaluate((one) => getComputedStyle(one).backgroundColor),
                'rgb(255, 221, 221)',
            );
        });
        const cells = (text) =>
            Array.from({ length: 30 }, (unused, at) => (at === 20 ? text : 'x'));
        const wide = new RunBuilder('suite_wide').testCase('tst', (one) =>
            one.fail('Wide', {
                tablediff: [
                    tableRow('deletion', 0, cells('old')),
                    tableRow('insertion', 0, cells('new')),
                ],
            }),
        );
        await onPage(addressOf(wide) + '#at=tst/!0', (page) =>
            eventually(async () => {
                const inner = await page.locator('td.differs').first().boundingBox();
                const outer = await page.locator('#detail .scroll').boundingBox();
                return inner.x >= outer.x && inner.x + inner.width <= outer.x + outer.width;
            }, true),
        );
    });

    test('The failed picture is compared with the one beside it in three ways', () =>
        onShop(pictureFailure, async (page) => {
            const use = (name) => page.getByRole('button', { name }).click();
            const clips = () =>
                page
                    .locator('.stage .picture')
                    .evaluateAll((all) => all.map((one) => getComputedStyle(one).clipPath));
            await use('Slider');
            const wiped = await clips();
            assert.match(wiped[0], /inset\(-1px calc\(50%\)|inset\(-1px 50%/);
            await page.getByRole('slider').focus();
            await page.keyboard.press('Home');
            const home = await clips();
            assert.ok(home[0] !== wiped[0] && home[1] !== wiped[1]);
            const boxes = await page
                .locator('.stage .picture, .stage .wipe')
                .evaluateAll((all) => all.map((one) => one.getBoundingClientRect().top));
            assert.deepEqual(new Set(boxes).size, 1, 'the slider is over the pictures');
            await use('Difference');
            assert.equal(
                await page
                    .locator('.stage .actual .picture')
                    .evaluate((one) => getComputedStyle(one).mixBlendMode),
                'difference',
            );
            await use('Side by side');
            assert.equal(await page.getByRole('slider').isVisible(), false);
            assert.deepEqual(
                await page
                    .locator('.stage img')
                    .evaluateAll((all) =>
                        all.map((one) => [one.src.split('/').pop(), one.naturalWidth]),
                    ),
                [
                    ['expected_1.png', 480],
                    ['failed_1.png', 480],
                ],
            );
            await use('8×');
            await page.locator('.pictures').focus();
            await page.keyboard.press('ArrowDown');
            assert.match(await heading(page), /Screenshot comparison/);
        }));

    test('Neither picture shows through the other when they differ in size', async () => {
        const directory = report(dataFile(shopRuns()));
        fs.writeFileSync(
            path.join(directory, failedImages, 'failed_1.png'),
            solidPng(240, 100, [70, 130, 200], { x: 9, y: 6, size: 9 }),
        );
        const look = async (page) => {
            await page.getByRole('button', { name: 'Slider' }).click();
            await page.getByRole('slider').fill('25');
            const [expected, actual] = await page.locator('.stage .picture').evaluateAll((all) =>
                all.map((one) => ({
                    clip: getComputedStyle(one).clipPath,
                    box: JSON.stringify(one.getBoundingClientRect()),
                    scale: one.firstChild.width / one.firstChild.naturalWidth,
                })),
            );
            assert.deepEqual(
                [expected.clip, actual.clip],
                ['inset(-1px 75% -1px -1px)', 'inset(-1px -1px -1px 25%)'],
            );
            assert.equal(expected.box, actual.box);
            assert.ok(Math.abs(expected.scale - actual.scale) < 0.01);
            assert.match(
                (await texts(page, '.images .note')).join(),
                /expected 480 × 270, actual 240 × 100/,
            );
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
            type: 'visualVerificationResult',
            failedObjectDump: 'x-results:/' + snapshot,
        };
        const run = new RunBuilder('suite').testCase('tst', (one) => one.fail('Form', failure));
        const directory = report(dataFile([run.finish()]));
        const content = { kind: 'content', name: 'text', expected: '<b>', actual: 'a' };
        const tree = (...children) => [{ name: 'Order', class: 'QGroupBox', children }];
        const name = { name: 'Name', class: 'QLineEdit', differences: [content] };
        const button = { name: 'New', class: 'QPushButton', differences: [{ kind: 'structure' }] };
        const trees = { expected: tree(name), actual: tree(name, button) };
        fs.mkdirSync(path.join(directory, path.dirname(snapshot)), { recursive: true });
        fs.writeFileSync(
            path.join(directory, snapshot + '.js'),
            'morvexVisualTrees(' + JSON.stringify(trees) + ');',
        );
        const address = tools.fileAddress(directory, '#at=tst/!0');
        await onPage(address, async (page) => {
            const differing = (label) =>
                texts(page, `.visualtrees section:has(h3:text-is("${label}")) .differs > div`);
            const changed = 'Name QLineEditcontent, text: expected ‘<b>’, actual ‘a’';
            await eventually(() => differing('Expected'), [changed]);
            await eventually(() => differing('Actual'), [changed, 'New QPushButtonstructure, no counterpart']);
        });
        fs.rmSync(path.join(directory, snapshot + '.js'));
        await onPage(address, (page) =>
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
        const server = await tools.serve(shop());
        for (const offered of [true, false]) {
            await onPage(
                server.address + '#run=3&at=tst_catalogue/Prices/!0',
                async (page, context) => {
                    await context.grantPermissions(['clipboard-read', 'clipboard-write']);
                    await page.evaluate(() => navigator.clipboard.writeText('old'));
                    const read = await page.evaluateHandle(() =>
                        navigator.clipboard.readText.bind(navigator.clipboard),
                    );
                    if (!offered)
                        await page.evaluate(() =>
                            Object.defineProperty(navigator, 'clipboard', { value: undefined }),
                        );
                    await page.getByRole('button', { name: 'Copy failure' }).click();
                    await page.locator('#toast.shown').waitFor();
                    const text = await page.evaluate((readText) => readText(), read);
                    assert.match(text, /^FAIL: Basket/);
                    const address = '#run=2026-03-03T22:00:00Z&at=tst_catalogue/Prices/!0';
                    assert.ok(text.includes(server.address + address), text);
                },
            );
        }
        server.close();
    });

    test('A test case is followed through the runs', () =>
        onShop('', async (page) => {
            await row(page, 'tst_catalogue').click();
            const points = block(page, 'History').locator('.point');
            assert.deepEqual(
                await points.evaluateAll((all) =>
                    all.slice(1).map((one) => one.getAttribute('aria-label').replace(/,.*:/, ':')),
                ),
                ['Run 2 03-02: Failed, 16 s', 'Run 3 03-03: Failed, 16 s'],
            );
            await points.nth(0).click();
            await eventually(() => page.locator('#runPicker').inputValue(), '0');
            assert.equal(await heading(page), 'tst_catalogue');
            await page.goBack();
            await eventually(() => page.locator('#runPicker').inputValue(), '2');
        }));

    test('A run that ran nothing or was interrupted does not pass for a good one', async () => {
        const empty = new RunBuilder('suite', '2026-01-01T00:00:00Z').finish();
        const open = new RunBuilder('suite', '2026-01-02T00:00:00Z')
            .testCase('tst_a', (one) => one.fail('x'))
            .begin('testcase', 'tst_b')
            .begin('section', 'inner')
            .log('the last words').document;
        const address = tools.fileAddress(report(dataFile([empty, open])));
        await onPage(address + '#run=1', async (page) => {
            assert.match(await page.locator('#detail .marks').innerText(), /Nothing ran/);
            assert.match(await page.locator('#favicon').getAttribute('href'), /neutral/);
            assert.equal(await page.locator('.chips').count(), 0);
        });
        await onPage(address, async (page) => {
            assert.match(
                await page.locator('.runs tr[aria-current]').innerText(),
                /2 failed · interrupted/,
            );
            await page.locator('#detail .notice .testlink').click();
            await eventually(() => heading(page), 'inner');
            const last = block(page, 'Last entries').locator('.name');
            assert.deepEqual(await last.allTextContents(), ['the last words']);
        });
    });

    test('A character that can’t be seen is drawn, and named where it makes the difference', async () => {
        const run = new RunBuilder('suite_a').testCase('tst_\u202egpj', (one) =>
            one
                .fail('x', { detail: "Expected 'a\u200bb', got 'ab'." })
                .fail('x', { detail: "Expected '\u00e9t\u00e9', got 'e\u0301te\u0301'." }),
        );
        await onPage(addressOf(run), async (page) => {
            for (const said of [
                /Expected: U\+200B \(zero width space\)\. Actual: none/,
                /Expected: U\+00E9\. Actual: U\+0065, U\+0301\./,
            ]) {
                await page.keyboard.press('n');
                assert.match(await block(page, 'Values').locator('.note').textContent(), said);
            }
            assert.ok((await rowNames(page)).includes('tst_U+202Egpj'));
        });
    });
});
