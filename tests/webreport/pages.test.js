'use strict';

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { after, before, describe, test } = require('node:test');
const tools = require('./browser');
const { shopRuns } = require('./demo');
const { solidPng } = require('./png');
const { RunBuilder, dataFile, deepStatement, tableRow } = require('./testdata');

if (tools.missing) console.log(tools.missing);

const rowNames = (page) => page.locator('#tree .row .name').allTextContents();
const row = (page, name) =>
    page
        .locator('#tree .row')
        .filter({ has: page.locator('.name', { hasText: new RegExp('^' + name + '$') }) });
const chip = (page, key, group) =>
    page.getByRole('group', { name: group || 'Test cases' }).locator('[data-key="' + key + '"]');
const heading = (page) => page.locator('#detail h1');
const block = (page, title) =>
    page
        .locator('#detail .block')
        .filter({ has: page.getByRole('heading', { level: 2, name: new RegExp('^' + title) }) });

const failedImages = 'suite_shop/tst_catalogue/Basket/failedImages';
const pictureFailure = '#run=3&at=tst_catalogue/Prices/!2';
const selected = (page) => page.locator('.row[aria-selected="true"] .name');
const scrollTop = (page) => page.locator('#detail').evaluate((one) => one.scrollTop);

async function eventually(read, expected) {
    let value;
    for (let attempt = 0; attempt < 100; ++attempt) {
        value = await read();
        if (JSON.stringify(value) === JSON.stringify(expected)) return;
        await new Promise((resolve) => setTimeout(resolve, 20));
    }
    assert.deepEqual(value, expected);
}

describe('Pages of the web report', { skip: tools.missing || false, timeout: 240000 }, () => {
    let browser;
    let shop;
    const reports = [];

    before(async () => {
        browser = await tools.launch();
        shop = report(dataFile(shopRuns()));
    });
    after(async () => {
        await browser.close();
        reports.forEach(tools.removeReport);
    });

    function report(data) {
        reports.push(tools.makeReport(data));
        return reports[reports.length - 1];
    }

    /// Runs `body` on a fresh page. An error in a script fails the test, wherever it comes from,
    /// but for the one that a cut data file is.
    async function onPage(address, body, { dataIsCut, ...options } = {}) {
        const context = await browser.newContext({
            viewport: { width: 1300, height: 800 },
            ...options,
        });
        const page = await context.newPage();
        page.setDefaultTimeout(15000);
        const errors = [];
        page.on('pageerror', (error) => errors.push(error.message));
        page.on('console', (message) => {
            if (/Content Security Policy/.test(message.text())) errors.push(message.text());
        });
        try {
            await page.goto(address);
            if (dataIsCut) assert.equal(errors.splice(0).length, 1);
            await body(page, context);
            assert.deepEqual(errors, []);
        } finally {
            await context.close();
        }
    }

    const onShop = (hash, body, options) => onPage(tools.fileAddress(shop, hash), body, options);

    test('The tree opens and closes by clicks and by keys, and the details follow', () =>
        onShop('', async (page) => {
            assert.equal(await heading(page).textContent(), 'suite_shop');
            await row(page, 'tst_catalogue').locator('[data-toggle]').click();
            await row(page, 'Prices').locator('.name').click();
            assert.equal(await page.evaluate(() => document.activeElement.id), 'tree');
            assert.equal(await heading(page).textContent(), 'Prices');
            await page.keyboard.press('ArrowRight');
            await page.keyboard.press('ArrowRight');
            assert.match(await heading(page).textContent(), /Object property comparison/);
            assert.equal(
                await page.locator('#tree').getAttribute('aria-activedescendant'),
                await page.locator('.row[aria-selected="true"]').getAttribute('id'),
            );
            await page.keyboard.press('ArrowLeft');
            await page.keyboard.press('ArrowLeft');
            assert.equal(await row(page, 'Prices').getAttribute('aria-expanded'), 'false');
            assert.ok(!(await rowNames(page)).some((name) => name.includes('Object property')));
        }));

    test('Outcomes can be asked for and hidden', () =>
        onShop('', async (page) => {
            await chip(page, 'failed').click();
            assert.deepEqual(await rowNames(page), ['suite_shop', 'tst_catalogue', 'tst_import']);
            await chip(page, 'error').click();
            assert.deepEqual(await rowNames(page), [
                'suite_shop',
                'tst_catalogue',
                'tst_import',
                'tst_crash',
            ]);
            await chip(page, 'error').click();
            await chip(page, 'failed').click();
            const names = await rowNames(page);
            assert.ok(
                names.includes('tst_login') &&
                    !names.includes('tst_crash') &&
                    !names.includes('tst_import'),
            );
            assert.match(await chip(page, 'failed').textContent(), /^not /);
            await page.locator('#tree').focus();
            await page.keyboard.press('Escape');
            await page.keyboard.press('f');
            const failures = await rowNames(page);
            assert.ok(
                failures.includes('Execution error') &&
                    failures.includes('The broken file is refused'),
            );
            assert.ok(
                !failures.includes('The catalogue is there') && !failures.includes('tst_markup'),
            );
        }));

    test('The search finds results in parts that are closed, while one types', () =>
        onShop('', async (page) => {
            await page.keyboard.press('/');
            await page.keyboard.type('pays -cancelled');
            assert.deepEqual(await rowNames(page), [
                'suite_shop',
                'tst_orders',
                'Orders',
                'An order is placed',
                'When the customer pays',
            ]);
            assert.match(await page.locator('#listNote').textContent(), /1 of 25 test cases/);
            await page.keyboard.type(' nowhere');
            assert.match(await page.locator('#listEmpty').innerText(), /Nothing matches/);
            await page.getByRole('button', { name: 'Take them away' }).click();
            assert.equal(await page.evaluate(() => document.activeElement.id), 'tree');
            assert.ok((await rowNames(page)).length > 10);
            for (const [term, found] of [
                ['"attempt 2"', 'tst_login'],
                ['ffdddd', 'tst_catalogue'],
            ]) {
                await page.locator('#search').fill(term);
                assert.equal((await rowNames(page))[1], found);
            }
            await page.locator('#search').press('Escape');
            assert.ok((await rowNames(page)).length > 10);
        }));

    test('Markup in a message stays text', () =>
        onShop('#run=3&at=tst_markup/!0', async (page) => {
            assert.ok((await heading(page).textContent()).includes('<b>bold</b> & </script>'));
            assert.equal(await page.locator('#detail img, #detail b, #tree b').count(), 0);
            assert.doesNotMatch(await page.title(), /broken/);
        }));

    test('A test case is followed through the runs', () =>
        onShop('', async (page) => {
            assert.deepEqual(
                await block(page, 'Newly failing').locator('.name').allTextContents(),
                ['tst_import'],
            );
            assert.deepEqual(await block(page, 'Failing').locator('.name').allTextContents(), [
                'tst_catalogue',
                'tst_crash',
            ]);
            await row(page, 'tst_catalogue').click();
            const points = block(page, 'History').locator('.point');
            assert.deepEqual(
                await points.evaluateAll((all) =>
                    all.map((one) => one.getAttribute('aria-label').replace(/,.*:/, ':')),
                ),
                ['Run 1: Passed, 12 s', 'Run 2: Failed, 16 s', 'Run 3: Failed, 16 s'],
            );
            await points.nth(0).click();
            await eventually(() => page.locator('#runPicker').inputValue(), '0');
            assert.equal(await heading(page).textContent(), 'tst_catalogue');
            await page.goBack();
            await eventually(() => page.locator('#runPicker').inputValue(), '2');
            await page.locator('#runPicker').focus();
            assert.deepEqual(
                (await page.locator('#runPicker option').allTextContents()).map((label) =>
                    label.replace(/.* · /, ''),
                ),
                ['3 failed', '3 failed', '1 failed'],
            );
            await page.locator('#runPicker').selectOption('1');
            assert.equal(await page.evaluate(() => document.activeElement.id), 'runPicker');
            assert.equal(await heading(page).textContent(), 'tst_catalogue');
            await page.keyboard.press('Escape');
            await page.locator('#tree').focus();
            await page.keyboard.press('[');
            assert.equal(await page.locator('#runPicker').inputValue(), '0');
        }));

    test('Retries are attempts of one test case, marked as flaky when one passed', () =>
        onShop('', async (page) => {
            assert.equal(await row(page, 'tst_login').count(), 1);
            await chip(page, 'flaky').click();
            assert.deepEqual(await rowNames(page), ['suite_shop', 'tst_login']);
            await row(page, 'tst_login').click();
            assert.deepEqual(await block(page, 'Attempts').locator('.name').allTextContents(), [
                'Attempt 1 of 2: failed',
                'Attempt 2 of 2: passed',
            ]);
            assert.match(await page.locator('#detailBody .notice').textContent(), /Flaky/);
            await block(page, 'Failures').locator('a').click();
            await eventually(() => heading(page).textContent(), 'The button is enabled');
            assert.match(
                await page.locator('#detail .path').textContent(),
                /tst_loginAttempt 1 of 2/,
            );
        }));

    test('Expected and actual value stand side by side with the differing characters marked', () =>
        onShop('#run=3&at=tst_catalogue/Prices/!0', async (page) => {
            assert.deepEqual(await page.locator('.values pre').allTextContents(), [
                'Sum: 1.204,50 €',
                'Sum: 1,204.50 EUR',
            ]);
            assert.deepEqual(await page.locator('.values mark.expected').allTextContents(), [
                '.',
                ',',
                '€',
            ]);
            assert.deepEqual(await page.locator('.values mark.actual').allTextContents(), [
                ',',
                '.',
                'EUR',
            ]);
            const [left, right] = await page
                .locator('.values pre')
                .evaluateAll((all) => all.map((one) => one.getBoundingClientRect().top));
            assert.equal(left, right);
        }));

    test('A difference far down in long values is in view, and both are read beside each other', async () => {
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
        const run = new RunBuilder('suite_long').testCase('tst', (one) =>
            [500, 9000].forEach((amount) => failure(one, amount)),
        );
        const address = tools.fileAddress(report(dataFile([run.finish()])));
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
                const tops = () =>
                    page
                        .locator('.values pre')
                        .evaluateAll((all) => all.map((one) => one.scrollTop));
                await page.locator('.values pre.actual').evaluate((one) => (one.scrollTop = 77));
                await eventually(tops, [77, 77]);
            });
    });

    test('Table differences are a table', () =>
        onShop('#run=3&at=tst_catalogue/Prices/!1', async (page) => {
            const cells = await page
                .locator('.tablediff tbody tr')
                .evaluateAll((rows) =>
                    rows.map((one) => [...one.cells].map((cell) => cell.textContent)),
                );
            assert.deepEqual(cells, [
                ['Row 2', 'expected', 'Lamp', '2', '79.00#ffdddd'],
                ['Row 2', 'actual', 'Lamp', '3', '118.50'],
                ['Row 5', 'actual', 'Gift wrap', '1', '0.00'],
            ]);
            assert.deepEqual(await page.locator('.tablediff td.differs').count(), 4);
            assert.equal(
                await page
                    .locator('.swatch')
                    .evaluate((one) => getComputedStyle(one).backgroundColor),
                'rgb(255, 221, 221)',
            );
        }));

    test('A wide table shows where it differs, an enlarged picture where the slider is', async () => {
        const cells = (text) => Array.from({ length: 30 }, (unused, at) => (at === 20 ? text : 'x'));
        const run = new RunBuilder('suite_wide').testCase('tst', (one) =>
            one.fail('Wide', {
                tablediff: [
                    tableRow('deletion', 0, cells('old')),
                    tableRow('insertion', 0, cells('new')),
                ],
            }),
        );
        const isInView = (page, what, box) => async () => {
            const inner = await page.locator(what).first().boundingBox();
            const outer = await page.locator(box).boundingBox();
            return inner.x >= outer.x && inner.x + inner.width <= outer.x + outer.width;
        };
        const address = tools.fileAddress(report(dataFile([run.finish()])));
        await onPage(address + '#at=tst/!0', (page) =>
            eventually(isInView(page, 'td.differs', '#detail .scroll'), true),
        );
        await onShop(pictureFailure, async (page) => {
            await page.getByRole('button', { name: '8×' }).click();
            const line = () =>
                page.locator('.pictures').evaluate((box) => {
                    const middle = box.scrollLeft + box.clientWidth / 2;
                    return Math.round((10 * middle) / box.scrollWidth);
                });
            assert.equal(await line(), 5);
            await page.locator('.pictures').focus();
            await page.keyboard.press('ArrowDown');
            assert.match(await heading(page).textContent(), /Screenshot comparison/);
        });
    });

    test('The failed picture is compared with the one beside it in three ways', () =>
        onShop('#run=3&at=tst_catalogue/Prices/!2', async (page) => {
            await page.getByRole('button', { name: 'Slider' }).waitFor();
            const clips = () =>
                page
                    .locator('.stage .picture')
                    .evaluateAll((all) => all.map((one) => getComputedStyle(one).clipPath));
            const wiped = await clips();
            assert.match(wiped[0], /inset\(-1px calc\(50%\)|inset\(-1px 50%/);
            await page.getByRole('slider').focus();
            await page.keyboard.press('Home');
            const home = await clips();
            assert.ok(home[0] !== wiped[0] && home[1] !== wiped[1]);
            const boxes = await page
                .locator('.stage .picture, .stage .wipe')
                .evaluateAll((all) => all.map((one) => one.getBoundingClientRect().top));
            assert.deepEqual(new Set(boxes).size, 1, 'the slider lies over the pictures');
            await page.getByRole('button', { name: 'Difference' }).click();
            assert.equal(
                await page
                    .locator('.stage .actual .picture')
                    .evaluate((one) => getComputedStyle(one).mixBlendMode),
                'difference',
            );
            await page.getByRole('button', { name: 'Side by side' }).click();
            assert.equal(await page.getByRole('slider').isVisible(), false);
            assert.deepEqual(
                await page
                    .locator('.stage img')
                    .evaluateAll((all) =>
                        all.map((one) => decodeURIComponent(one.src).split('/').pop()),
                    ),
                ['expected_1.png', 'failed_1.png'],
            );
            assert.deepEqual(
                await page
                    .locator('.stage img')
                    .evaluateAll((all) => all.map((one) => one.naturalWidth)),
                [480, 480],
            );
        }));

    test('Neither picture shows through the other when they differ in size', async () => {
        const directory = report(dataFile(shopRuns()));
        fs.writeFileSync(
            path.join(directory, failedImages, 'failed_1.png'),
            solidPng(240, 100, [70, 130, 200], { x: 9, y: 6, size: 9 }),
        );
        const address = tools.fileAddress(directory, pictureFailure);
        const viewport = { width: 390, height: 800 };
        await onPage(
            address,
            async (page) => {
                await page.getByRole('slider').fill('25');
                const [expected, actual] = await page
                    .locator('.stage .picture')
                    .evaluateAll((all) =>
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
                    await page.locator('.images .note').textContent(),
                    /expected 480 × 270, actual 240 × 100/,
                );
                assert.match(await printed(page), /expected 480 × 270, actual 240 × 100/);
                const scales = await page
                    .locator('#print .stage img')
                    .evaluateAll((all) => all.map((one) => one.width / one.naturalWidth));
                assert.ok(Math.abs(scales[0] - scales[1]) < 0.01, scales.join(' '));
            },
            { viewport },
        );
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

    test('Attachments are links, pictures among them to be seen', () =>
        onShop('#run=3&at=tst_catalogue/!2', async (page) => {
            assert.equal(
                await block(page, 'File').locator('p a').getAttribute('href'),
                './suite_shop/tst_catalogue/shot%20%231.png',
            );
            await eventually(
                () => page.locator('.thumbnail img').evaluate((one) => one.naturalWidth),
                480,
            );
            await page.keyboard.press('j');
            assert.match(
                await block(page, 'File').locator('a').getAttribute('href'),
                /server\.log$/,
            );
        }));

    test('An error shows its place and call stack', () =>
        onShop('#run=3&at=tst_crash/!1', async (page) => {
            assert.deepEqual(await block(page, 'Call stack').locator('li').allTextContents(), [
                'tst_crash/script.js:17',
                'shared/my steps.js:203',
                '/opt/lib/start.js:4',
            ]);
            assert.match(await page.locator('.facts').textContent(), /tst_crash\/script\.js:17/);
            await eventually(
                () => page.locator('.thumbnail img').evaluate((one) => one.naturalWidth),
                480,
            );
            assert.deepEqual(await block(page, 'Just before').locator('.name').allTextContents(), [
                'Open the settings',
            ]);
        }));

    test('Copying works with a clipboard and where the browser offers none', async () => {
        const server = await tools.serve(shop);
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
                    for (const part of [
                        'FAIL: Basket',
                        'Expected: Sum: 1.204,50 €',
                        'Actual:   Sum: 1,204.50 EUR',
                        server.address + '#run=2026-03-03T22:00:00Z&at=tst_catalogue/Prices/!0',
                    ])
                        assert.ok(text.includes(part), part + ' in ' + text);
                },
            );
        }
        server.close();
    });

    test('An address brings a colleague to the same place with the same filters', () =>
        onShop('', async (page, context) => {
            await chip(page, 'skipped').click({ modifiers: ['Shift'] });
            await chip(page, 'fail', 'Results').click();
            await page.locator('#search').fill('basket "comparison of"');
            await page.locator('#slowest').click();
            await row(page, 'Prices').click();
            await page.keyboard.press('n');
            const address = page.url();
            const names = await rowNames(page);
            const other = await context.newPage();
            await other.goto(address);
            assert.deepEqual(await rowNames(other), names);
            assert.equal(await heading(other).textContent(), await heading(page).textContent());
            assert.equal(await other.locator('#search').inputValue(), 'basket "comparison of"');
            assert.match(await chip(other, 'skipped').textContent(), /^not /);
            assert.equal(await other.locator('#slowest').getAttribute('aria-pressed'), 'true');
        }));

    test('The way past the filters to the list keeps run, place and filters', () =>
        onShop('#run=2&at=tst_import&tests=-skipped', async (page) => {
            const before = page.url();
            await page.locator('#skip').focus();
            await page.keyboard.press('Enter');
            assert.equal(await page.evaluate(() => document.activeElement.id), 'tree');
            assert.equal(page.url(), before);
        }));

    test('What an address names and the report does not hold is said', () =>
        onShop('#run=2026-03-02T22:00:00Z&at=tst_import', async (page) => {
            const notices = () => page.locator('#notices').innerText();
            assert.equal(await page.locator('#runPicker').inputValue(), '1');
            assert.equal(await notices(), '');
            for (const [hash, said] of [
                ['#run=2020-01-01T00:00:00Z&at=tst_import', /run of the address/],
                ['#run=99', /run of the address/],
                ['#run=2&at=tst_gone/Form', /place of the address/],
            ]) {
                await page.evaluate((to) => (location.hash = to), hash);
                await eventually(async () => said.test(await notices()), true);
            }
            await page.locator('#notices .close').click();
            assert.equal(await notices(), '');
            await page.evaluate(() => (location.hash = '#run=2&at=tst_gone'));
            await eventually(async () => /place of the address/.test(await notices()), true);
            await row(page, 'tst_import').click();
            assert.equal(await notices(), '');
        }));

    test('The mark in the list stays near when its row is closed away or filtered out', () =>
        onShop('#run=3&at=tst_catalogue/Prices/!0', async (page) => {
            await row(page, 'tst_catalogue').locator('[data-toggle]').click();
            assert.equal(await selected(page).textContent(), 'tst_catalogue');
            assert.equal(await heading(page).textContent(), 'tst_catalogue');
            await row(page, 'tst_crash').click();
            await page.locator('.outcome[data-key="failed"]').click();
            assert.deepEqual(await rowNames(page), ['suite_shop', 'tst_catalogue', 'tst_import']);
            assert.equal(await selected(page).count(), 0);
            assert.match(await page.locator('#hiddenNote').innerText(), /Hidden in the list/);
            await page.locator('#tree').focus();
            await page.keyboard.press('ArrowUp');
            assert.equal(await heading(page).textContent(), 'tst_import');
            assert.equal(await page.locator('#hiddenNote').isVisible(), false);
        }));

    test('Following a link and going back keeps what was opened, and how far one had read', () =>
        onShop(
            '#run=3',
            async (page) => {
                await row(page, 'tst_report_01').locator('[data-toggle]').click();
                const isOpen = () => row(page, 'tst_report_01').getAttribute('aria-expanded');
                const link = block(page, 'Failing').locator('a').last();
                await link.scrollIntoViewIfNeeded();
                const read = await scrollTop(page);
                assert.ok(read > 0);
                await link.click();
                await eventually(() => heading(page).textContent(), 'tst_crash');
                assert.equal(await page.evaluate(() => document.activeElement.id), 'detail');
                assert.equal(await scrollTop(page), 0);
                assert.equal(await isOpen(), 'true');
                await page.goBack();
                await eventually(() => heading(page).textContent(), 'suite_shop');
                await eventually(() => scrollTop(page), read);
                assert.equal(await isOpen(), 'true');
            },
            { viewport: { width: 1300, height: 400 } },
        ));

    test('Reloading keeps how far one had read below pictures', () =>
        onShop(
            pictureFailure,
            async (page) => {
                await page.locator('.stage').waitFor();
                await page.locator('#detail').evaluate((one) => (one.scrollTop = 1e6));
                const read = await scrollTop(page);
                assert.ok(read > 200);
                await eventually(() => page.evaluate(() => history.state.top), read);
                await page.reload();
                await eventually(() => scrollTop(page), read);
            },
            { viewport: { width: 1300, height: 400 } },
        ));

    test('What the search found is marked in the row and in the details', () =>
        onShop('#run=3&at=tst_catalogue/Prices/!1', async (page) => {
            const found = (place) => page.locator(place + ' mark.found').allTextContents();
            await page.locator('#search').fill('lamp table');
            assert.deepEqual(await found('#tree'), ['Table', 'Table']);
            assert.deepEqual([...new Set(await found('#detail'))], ['Table', 'Lamp']);
            await page.locator('#search').fill('');
            assert.deepEqual(await found('body'), []);
        }));

    test('Rows are links that open in a tab of their own', () =>
        onShop('', async (page, context) => {
            const opened = context.waitForEvent('page');
            await row(page, 'tst_import')
                .locator('.name')
                .click({ modifiers: ['Control'] });
            const other = await opened;
            await eventually(() => heading(other).textContent(), 'tst_import');
            assert.equal(await heading(page).textContent(), 'suite_shop');
        }));

    test('Beyond the runs that fit the shown one is among those listed', async () => {
        const runs = Array.from({ length: 100 }, (unused, index) =>
            new RunBuilder('suite_many', new Date(Date.UTC(2026, 0, 1 + index)).toISOString())
                .testCase('tst', (one) => (index % 7 ? one.pass('x') : one.fail('x')))
                .finish(),
        );
        await onPage(tools.fileAddress(report(dataFile(runs)), '#run=8'), async (page) => {
            const current = page.locator('.runs tr[aria-current]');
            assert.match(await current.innerText(), /^Run 8\s/);
            assert.match(await block(page, 'Runs').innerText(), /30 of 100 runs are shown/);
            await row(page, 'tst').click();
            const history = block(page, 'History');
            assert.match(
                await history.locator('[aria-current]').getAttribute('aria-label'),
                /^Run 8, 2026-01-08/,
            );
            assert.equal(await history.locator('.point').count(), 40);
            await history.getByRole('button', { name: /newer/ }).click();
            await history.getByRole('button', { name: /newer/ }).click();
            assert.deepEqual(
                [
                    await history.locator('.number').first().textContent(),
                    await history.locator('.number').last().textContent(),
                ],
                ['1', '100'],
            );
        });
    });

    test('A run that ran nothing or did not end does not pass for a good one', async () => {
        const empty = new RunBuilder('suite', '2026-01-01T00:00:00Z').finish();
        const open = new RunBuilder('suite', '2026-01-02T00:00:00Z')
            .testCase('tst_a', (one) => one.fail('x'))
            .begin('testcase', 'tst_b')
            .begin('section', 'inner')
            .log('the last words').document;
        const address = tools.fileAddress(report(dataFile([empty, open])));
        await onPage(address + '#run=1', async (page) => {
            assert.equal(await page.locator('.verdict').textContent(), 'No test case ran.');
            assert.match(await page.locator('#detail .marks').innerText(), /Nothing ran/);
            assert.match(await page.locator('#favicon').getAttribute('href'), /neutral/);
            assert.equal(await page.locator('.chips').count(), 0);
        });
        await onPage(address, async (page) => {
            assert.match(
                await page.locator('.runs tr[aria-current]').innerText(),
                /2 failed · not ended/,
            );
            await page.locator('#detail .notice .testlink').click();
            await eventually(() => heading(page).textContent(), 'inner');
            assert.deepEqual(await block(page, 'Last entries').locator('.name').allTextContents(), [
                'the last words',
            ]);
        });
    });

    test('The history of a test that was cut off twice tells no failure', async () => {
        const cutOff = (start) => new RunBuilder('suite', start).begin('testcase', 'tst').document;
        const runs = [cutOff('2025-12-31T22:00:00Z'), cutOff('2026-01-01T22:00:00Z')];
        await onPage(tools.fileAddress(report(dataFile(runs)), '#at=tst'), async (page) => {
            const history = block(page, 'History');
            assert.equal(
                await history.locator('.note').first().textContent(),
                'Failed in 0 of 2 runs, not ended in 2.',
            );
            assert.deepEqual(await history.locator('.date').allTextContents(), [
                '2025-12-31',
                '2026-01-01',
            ]);
        });
    });

    test('A character that can’t be seen is drawn, and named where it makes the difference', async () => {
        const run = new RunBuilder('suite_a').testCase('tst_\u202egpj', (one) =>
            one
                .fail('x', { detail: "Expected 'a\u200bb', got 'ab'." })
                .fail('x', { detail: "Expected '\u2601\ufe0f', got '\u2601'." })
                .fail('x', { detail: "Expected '\u00e9t\u00e9', got 'e\u0301te\u0301'." }),
        );
        const address = tools.fileAddress(report(dataFile([run.finish()])));
        await onPage(address, async (page) => {
            await page.keyboard.press('n');
            assert.ok((await rowNames(page)).includes('tst_U+202Egpj'));
            assert.deepEqual(await page.locator('.values mark .codepoint').allTextContents(), [
                'U+200B',
            ]);
            assert.match(
                await block(page, 'Values').locator('.note').textContent(),
                /Expected: U\+200B \(zero width space\)\. Actual: none/,
            );
            for (const said of [
                /Expected: U\+FE0F \(variation selector 16\)\. Actual: none/,
                /Expected: U\+00E9\. Actual: U\+0065, U\+0301\./,
            ]) {
                await page.keyboard.press('n');
                assert.match(await block(page, 'Values').locator('.note').textContent(), said);
            }
        });
    });

    test('The data file can be dropped on the page', async () => {
        const directory = report(dataFile(shopRuns()).slice(0, -9));
        const text = fs.readFileSync(tools.dataFileOf(directory), 'utf8');
        await onPage(
            tools.fileAddress(directory),
            async (page) => {
                const transfer = await page.evaluateHandle((content) => {
                    const data = new DataTransfer();
                    data.items.add(new File([content], 'results-v1.js'));
                    return data;
                }, text);
                await page.locator('body').dispatchEvent('drop', { dataTransfer: transfer });
                await page.locator('#tree .row').first().waitFor();
                await page.locator('#detail .testlink').first().click();
                assert.match(
                    await page.locator('#notices').innerText(),
                    /end of the data was missing/,
                );
            },
            { dataIsCut: true },
        );
    });

    test('The slowest come first when asked for', () =>
        onShop('', async (page) => {
            await page.keyboard.press('s');
            assert.deepEqual((await rowNames(page)).slice(1, 4), [
                'tst_import',
                'tst_catalogue',
                'tst_login',
            ]);
        }));

    test('From a row that the filters hide keys go on in the order of the list', () =>
        onShop('#run=3&at=tst_catalogue/Prices/!0', async (page) => {
            await page.keyboard.press('s');
            await page.locator('#search').fill('-catalogue');
            const names = await rowNames(page);
            await page.locator('#tree').focus();
            await page.keyboard.press('ArrowDown');
            assert.equal(
                await selected(page).textContent(),
                names[names.indexOf('tst_import') + 1],
            );
        }));

    test('The help tells of the keys and gives the focus back', () =>
        onShop('', async (page) => {
            await page.keyboard.press('?');
            await page.getByRole('dialog').getByText('failures only').waitFor();
            await page.keyboard.press('j');
            assert.equal(await heading(page).textContent(), 'suite_shop');
            await page.keyboard.press('Escape');
            await page.keyboard.press('j');
            assert.equal(await heading(page).textContent(), 'Random order of test cases');
        }));

    test('A data file cut anywhere is repaired through the file chooser', async () => {
        const text = dataFile(shopRuns());
        const lastRun = text.lastIndexOf('data.push( ');
        const cuts = [
            ['in a message', text.indexOf('Table Comparison', lastRun) + 5, 'tst_catalogue', false],
            ['behind the last test case', text.lastIndexOf('],"stop"'), 'tst_report_18', false],
            ['behind the document', text.length - 5, 'tst_report_18', true],
            ['in front of the results', lastRun + 20, null, false],
        ];
        for (const [name, cut, lastTest, ended] of cuts) {
            const directory = report(text.slice(0, cut));
            await onPage(
                tools.fileAddress(directory),
                async (page) => {
                    await page.getByText('The results could not be read').waitFor();
                    await page.setInputFiles('#dataFile', tools.dataFileOf(directory));
                    await page.locator('#tree .row').first().waitFor();
                    assert.equal(await page.locator('#runPicker option').count(), 3, name);
                    assert.equal(
                        await page.locator('.headline .badge').count(),
                        ended ? 0 : 1,
                        name,
                    );
                    if (lastTest) {
                        await page.locator('#tree').focus();
                        await page.keyboard.press('End');
                        assert.equal(await heading(page).textContent(), lastTest, name);
                    }
                    await page.locator('#runPicker').selectOption('0');
                    assert.match(
                        await page.locator('.totals').textContent(),
                        /25 test cases/,
                        name,
                    );
                },
                { dataIsCut: true },
            );
        }
    });

    test('Sections too deep for the browser are shown through the chooser', async () => {
        const directory = report(dataFile(shopRuns()) + deepStatement(5000));
        await onPage(
            tools.fileAddress(directory),
            async (page) => {
                assert.match(await page.locator('#nodata').innerText(), /nested by the thousand/);
                await page.setInputFiles('#dataFile', tools.dataFileOf(directory));
                await page.locator('#tree .row').first().waitFor();
                assert.equal(await page.locator('#runPicker option').count(), 4);
                await page.keyboard.press('e');
                await page.keyboard.press('n');
                assert.equal(await heading(page).textContent(), 'innermost');
                await page.keyboard.press('k');
                await page.keyboard.press('k');
                assert.match(await page.locator('#detail .marks').innerText(), /nested deeper/);
            },
            { dataIsCut: true },
        );
    });

    test('A page without data says what was the matter with the file', async () => {
        const said = (page) => page.locator('#nodata p').first().innerText();
        const alert = (page) => page.getByRole('alert').textContent();
        const missing = report(null);
        await onPage(tools.fileAddress(missing), async (page) => {
            assert.match(await said(page), /could not load/);
            await page.setInputFiles('#dataFile', path.join(missing, 'index.html'));
            assert.match(await alert(page), /holds no runs/);
        });
        await onPage(tools.fileAddress(report(dataFile([]))), async (page) =>
            assert.match(await said(page), /no run is in it/),
        );
        const tooLarge = report('var data = [];\n');
        fs.truncateSync(tools.dataFileOf(tooLarge), 600 * 1024 * 1024);
        await onPage(tools.fileAddress(missing), async (page) => {
            await page.setInputFiles('#dataFile', tools.dataFileOf(tooLarge));
            assert.match(await alert(page), /600 MB.*512 MB.*new report/);
            await page.evaluate(() => {
                FileReader.prototype.readAsText = function fail() {
                    this.onerror();
                };
            });
            await page.setInputFiles('#dataFile', path.join(missing, 'index.html'));
            assert.match(await alert(page), /could not be read/);
        });
    });

    test('20,000 results cost no more elements than twenty', async () => {
        const run = new RunBuilder('suite_big');
        for (let test = 0; test < 100; ++test)
            run.testCase('tst_' + test, () => {
                for (let check = 0; check < 200; ++check)
                    run.wait(1).verify(
                        check === 150 && test === 77 ? 'FAIL' : 'PASS',
                        'Check ' + test + '-' + check,
                    );
            });
        await onPage(tools.fileAddress(report(dataFile([run.finish()]))), async (page) => {
            await page.keyboard.press('e');
            const elements = () => page.evaluate(() => document.querySelectorAll('#tree *').length);
            assert.ok((await elements()) < 800);
            await page.keyboard.press('End');
            assert.equal(await heading(page).textContent(), 'Check 99-199');
            assert.ok(await row(page, 'Check 99-199').isVisible());
            await page.locator('#tree').evaluate(async (tree) => {
                for (let step = 40; step >= 20; --step) {
                    tree.scrollTop = (tree.scrollHeight * step) / 40;
                    await new Promise(requestAnimationFrame);
                }
            });
            await eventually(
                async () => (await rowNames(page)).some((name) => name.startsWith('Check 49-')),
                true,
            );
            assert.ok((await elements()) < 800);
            await page.locator('#search').fill('check 77-150');
            assert.deepEqual(await rowNames(page), ['suite_big', 'tst_77', 'Check 77-150']);
            await page.locator('#search').fill('check');
            assert.match(await page.locator('#listNote').textContent(), /20,000 hits/);
            assert.ok((await elements()) < 800);
        });
    });

    test('A message of a megabyte is shown in part until all of it is asked for', async () => {
        const run = new RunBuilder('suite_long')
            .log('start ' + 'x'.repeat(1 << 20) + ' end')
            .finish();
        await onPage(tools.fileAddress(report(dataFile([run])), '#at=!0'), async (page) => {
            const length = () =>
                page.locator('#detail pre').evaluate((one) => one.textContent.length);
            assert.ok((await length()) < 30000);
            await page.getByRole('button', { name: /Show all/ }).click();
            assert.ok((await length()) > 1 << 20);
        });
    });

    test('Everything works under a strict content policy', async () => {
        const server = await tools.serve(shop);
        await onPage(server.address, async (page) => {
            await page.keyboard.press('e');
            for (const key of ['f', 'n', 'n', 'n', 's', '?', '?']) await page.keyboard.press(key);
            await page.getByRole('button', { name: 'Difference' }).click();
            assert.equal(
                await page
                    .locator('.part')
                    .first()
                    .evaluate((one) => getComputedStyle(one).flexGrow),
                '1',
            );
            assert.notEqual(
                await page
                    .locator('.row')
                    .last()
                    .evaluate((one) => getComputedStyle(one).transform),
                'none',
            );
        });
        server.close();
    });

    test('The page follows the dark colours of the reader', async () => {
        const brightness = async (colorScheme) => {
            let sum;
            await onShop(
                '',
                async (page) => {
                    const color = await page.evaluate(
                        () => getComputedStyle(document.getElementById('list')).backgroundColor,
                    );
                    sum = color
                        .match(/\d+/g)
                        .slice(0, 3)
                        .reduce((total, part) => total + Number(part), 0);
                },
                { colorScheme },
            );
            return sum;
        };
        assert.ok((await brightness('light')) > 600);
        assert.ok((await brightness('dark')) < 200);
    });

    async function printed(page) {
        await page.evaluate(() => window.dispatchEvent(new Event('beforeprint')));
        await page.emulateMedia({ media: 'print' });
        return page.locator('#print').innerText();
    }

    test('Paper gets all test cases, and the failures with both their pictures', () =>
        onShop('', async (page) => {
            const text = await printed(page);
            for (const part of [
                'tst_report_18',
                'tst_login',
                'Sum: 1,204.50 EUR',
                'Gift wrap',
                'my steps.js:203',
            ])
                assert.ok(text.includes(part), part);
            assert.equal(await page.locator('#main').isVisible(), false);
            await page.emulateMedia({ media: null });
            // A fresh page, whose pictures nobody has looked at.
            await page.reload();
            const pdf = (await page.pdf()).toString('latin1');
            assert.equal(pdf.match(/\/Width 480/g).length, 3);
        }));

    test('Paper says what it leaves out, and a wide table keeps to it', async () => {
        const run = new RunBuilder('suite_wide').testCase('tst', (one) =>
            one
                .fail('Long', { detail: 'x'.repeat(90000) })
                .fail('Values', {
                    detail:
                        "Expected '" +
                        'same '.repeat(800) +
                        "1', got '" +
                        'same '.repeat(800) +
                        "2'.",
                })
                .fail('Wide', {
                    tablediff: Array.from({ length: 200 }, (unused, index) =>
                        tableRow(
                            index % 2 ? 'insertion' : 'deletion',
                            index >> 1,
                            Array.from({ length: 30 }, (cell, column) =>
                                column === 7 ? 'cell ' + index : 'same in both',
                            ),
                        ),
                    ),
                }),
        );
        await onPage(tools.fileAddress(report(dataFile([run.finish()]))), async (page) => {
            await page.setViewportSize({ width: 700, height: 900 });
            const text = await printed(page);
            assert.match(text, /87,000 more characters not printed/);
            assert.match(text, /3,700 equal characters/);
            assert.match(text, /40 of 200 differences, 29 columns not printed/);
            assert.ok(text.includes('cell 39') && !text.includes('same in both'));
            assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= 700));
        });
    });

    test('One failure that is hard to draw leaves the others on the paper', async () => {
        const run = new RunBuilder('suite_table').testCase('tst', (one) =>
            one
                .fail('Before')
                .fail('Rows', {
                    tablediff: [
                        tableRow('deletion', 0, ['a', 'b']),
                        tableRow('insertion', 0, ['a', 'b', 'more']),
                        tableRow('deletion', 1, ['c', 'd', 'less']),
                        tableRow('insertion', 1, ['c']),
                    ],
                })
                .fail('Broken', { text: 'Broken' }),
        );
        const address = tools.fileAddress(report(dataFile([run.finish()])));
        await onPage(address + '#at=tst/!1', async (page) => {
            assert.equal(await page.locator('#detail td.differs').count(), 6);
            await page.evaluate(() => {
                const { entryView } = globalThis.morvexReport.entryView;
                globalThis.reportError = () => {};
                globalThis.morvexReport.entryView.entryView = (app, node, views) => {
                    if (node.name === 'Broken') throw new Error('on purpose');
                    return entryView(app, node, views);
                };
            });
            const text = await printed(page);
            for (const part of ['Before', 'more', 'less', 'Could not be printed: Broken'])
                assert.ok(text.includes(part), part + ' in ' + text);
        });
    });

    test('On a narrow screen keys that scroll stay with the details', async () => {
        const narrow = { viewport: { width: 390, height: 800 } };
        const focused = (page) => page.evaluate(() => document.activeElement.id);
        const ways = [
            ['#run=3', (page) => row(page, 'tst_catalogue').click()],
            ['#run=3', (page) => page.keyboard.press('n')],
            ['#run=3&at=tst_catalogue', () => {}],
        ];
        for (const [hash, open] of ways)
            await onShop(
                hash,
                async (page) => {
                    await open(page);
                    assert.equal(await focused(page), 'detail');
                    const shown = await heading(page).textContent();
                    for (const blur of [false, true]) {
                        if (blur) await page.evaluate(() => document.activeElement.blur());
                        for (const key of ['PageDown', 'ArrowDown', 'End', 'Home'])
                            await page.keyboard.press(key);
                        assert.equal(await heading(page).textContent(), shown);
                    }
                    await page.keyboard.press('Escape');
                    await eventually(() => focused(page), 'tree');
                },
                narrow,
            );
    });

    test('On a narrow screen details take the place of the list, and Back gives it back', () =>
        onShop(
            '',
            async (page) => {
                const visible = async () => [
                    await page.locator('#list').isVisible(),
                    await page.locator('#detail').isVisible(),
                ];
                assert.deepEqual(await visible(), [true, false]);
                assert.equal(await chip(page, 'failed').isVisible(), false);
                await page.getByRole('button', { name: 'Filters' }).click();
                assert.equal(await chip(page, 'failed').isVisible(), true);
                for (const back of [
                    () => page.goBack(),
                    () => page.getByRole('button', { name: 'Results', exact: true }).click(),
                    () => page.keyboard.press('Escape'),
                ]) {
                    await row(page, 'tst_catalogue').click();
                    assert.deepEqual(await visible(), [false, true]);
                    await back();
                    await eventually(visible, [true, false]);
                    assert.equal(await selected(page).textContent(), 'tst_catalogue');
                }
                await page.locator('#tree').focus();
                await page.keyboard.press('n');
                assert.deepEqual(await visible(), [false, true]);
                assert.match(await heading(page).textContent(), /Object property/);
                await page.reload();
                assert.deepEqual(await visible(), [false, true]);
                assert.ok(
                    await page.evaluate(
                        () => document.documentElement.scrollWidth <= window.innerWidth,
                    ),
                );
            },
            { viewport: { width: 390, height: 800 } },
        ));

    test('A link that was sent opens its place on a narrow screen', () =>
        onShop(
            '#run=3&at=tst_crash/!1',
            async (page) => {
                assert.match(await heading(page).innerText(), /TypeError/);
                await page.getByRole('button', { name: 'Results', exact: true }).click();
                assert.match(await selected(page).innerText(), /TypeError/);
            },
            { viewport: { width: 390, height: 800 } },
        ));

    test('Without scripts the page says what to do', () =>
        onShop(
            '',
            async (page) => {
                assert.match(await page.locator('.noscript').innerText(), /needs JavaScript/);
                assert.equal(await page.getByText('Reading the results').isVisible(), false);
            },
            { javaScriptEnabled: false },
        ));
});
