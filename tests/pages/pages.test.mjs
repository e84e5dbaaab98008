// Reports opened in a browser, at the widths of a desk and of a phone, light and dark: no error on
// the console, no violation of the accessibility rules, and everything on them works.
//
//   PROPORTIONS=build/bin/proportions node --test tests/pages
//
// CHROMIUM names the browser; PICTURES a folder that takes pictures of the pages.
import assert from 'node:assert/strict';
import { mkdtempSync, readFileSync, rmSync, statSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { join, resolve } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { chromium } from 'playwright-core';

import { hostile, makeReports, manyGroups } from './reports.mjs';

const axe = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
const folder = mkdtempSync(join(tmpdir(), 'reports-'));
const reports = makeReports(resolve(process.env.PROPORTIONS ?? 'build/bin/proportions'), folder);
const sizes = { desk: { width: 1280, height: 900 }, phone: { width: 390, height: 844 } };
let browser;

before(async () => {
  browser = await chromium.launch({
    executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
    args: ['--no-sandbox'],
  });
});

after(async () => {
  await browser?.close();
  rmSync(folder, { recursive: true, force: true });
});

// Opens a report; what goes wrong on the page is collected in `problems`.
async function open(name, { size = 'desk', colorScheme = 'light', ...options } = {}) {
  const context = await browser.newContext({ viewport: sizes[size], colorScheme, ...options });
  context.setDefaultTimeout(180000);
  const page = await context.newPage();
  const problems = [];
  page.on('console', (message) => {
    if (['error', 'warning'].includes(message.type())) problems.push(message.text());
  });
  page.on('pageerror', (error) => problems.push(String(error)));
  page.on('request', (request) => {
    if (!/^(file|data):/.test(request.url())) problems.push(`asked for ${request.url()}`);
  });
  page.on('dialog', (dialog) => {
    problems.push(`dialog ${dialog.message()}`);
    dialog.dismiss();
  });
  await page.goto(`file://${reports[name]}`);
  return { page, problems, context };
}

async function violations(page) {
  // The page's own policy lets no script in but its own: the rules are run beside it.
  await page.evaluate(axe);
  const result = await page.evaluate(() => globalThis.axe.run(document, {
    runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa', 'best-practice'],
  }));
  return result.violations.map((v) => `${v.id}: ${v.help}: ${v.nodes[0].html} (${v.nodes.length})`);
}

const rowsShown = (page, table = '#t1') => page.locator(`${table} tbody tr:not(.group):visible`).count();

// Both sizes and both colour schemes, and of what differs little from these one of each.
const all = ['desk light', 'desk dark', 'phone light', 'phone dark'];
const some = ['desk light', 'phone dark'];
const looks = {
  'one-sample': all, 'split-groups': some, 'own-tables': some, bootstrap: all, paired: some,
  hostile: some, edges: all,
  german: ['desk light'], chinese: ['phone dark'],
};

for (const name of Object.keys(looks)) {
  describe(`the report ${name}`, () => {
    for (const look of looks[name]) {
      const [size, colorScheme] = look.split(' ');
      test(`is sound at the width of a ${size}, ${colorScheme}`, async () => {
        const { page, problems, context } = await open(name, { size, colorScheme });
        if (process.env.PICTURES) {
          await page.screenshot({
            path: join(process.env.PICTURES, `${name}-${size}-${colorScheme}.png`), fullPage: true,
          });
        }
        assert.deepEqual(await violations(page), []);
        const wider = await page.evaluate(
          () => document.documentElement.scrollWidth - document.documentElement.clientWidth);
        assert.ok(wider <= 0, `the page is ${wider} pixels wider than the screen`);
        assert.deepEqual(problems, []);
        await context.close();
      });
    }
  });
}

test('footnote marks lead to their footnotes and back', async () => {
  const { page, context } = await open('one-sample');
  const mark = page.locator('section.result sup a').first();
  await mark.click();
  const note = page.locator(`[id="${(await mark.getAttribute('href')).slice(1)}"]`);
  assert.equal(await note.count(), 1);
  await note.locator('a').click();
  assert.equal(new URL(page.url()).hash, `#${await mark.getAttribute('id')}`);
  await context.close();
});

test('a page on paper has no controls and cuts nothing off', async () => {
  const { page, context } = await open('split-groups', { colorScheme: 'dark' });
  await page.emulateMedia({ media: 'print' });
  assert.ok(await page.locator('#find').isHidden());
  assert.equal(await page.evaluate(() => getComputedStyle(document.body).backgroundColor), 'rgb(255, 255, 255)');
  const cut = await page.evaluate(() => [...document.querySelectorAll('.scroll')]
    .filter((box) => getComputedStyle(box).overflowY !== 'visible').length);
  assert.equal(cut, 0);
  await context.close();
});

test('every link leads somewhere, and no id is given twice', async () => {
  for (const name of ['one-sample', 'split-groups', 'own-tables', 'bootstrap', 'edges']) {
    const { page, context } = await open(name);
    const found = await page.evaluate(() => {
      const ids = [...document.querySelectorAll('[id]')].map((element) => element.id);
      const dead = [...document.querySelectorAll('a[href^="#"]')]
        .filter((link) => !document.getElementById(link.hash.slice(1))).map((link) => link.hash);
      return { twice: ids.filter((id, i) => ids.indexOf(id) !== i), dead };
    });
    assert.deepEqual(found, { twice: [], dead: [] }, name);
    await context.close();
  }
});

test('a plot has a line for each row of its table, with the numbers of the table', async () => {
  for (const name of ['one-sample', 'split-groups', 'paired', 'edges']) {
    const { page, context } = await open(name);
    const pairs = await page.evaluate(() => {
      const section = document.querySelector('.forest').closest('section');
      const clean = (text) => text.replace(/[\s\u2020]/g, '');
      const lines = [...section.querySelectorAll('.forest li:not(.head)')];
      const rows = [...section.querySelectorAll('tbody tr:not(.group)')];
      return rows.map((row, i) => {
        const cells = [...row.cells].slice(-2).map((cell) => {
          const copy = cell.cloneNode(true);
          copy.querySelectorAll('a').forEach((mark) => mark.remove());
          return clean(copy.textContent).replace(/,+$/, '') || 'missing';
        });
        return [`[${cells.join(',')}]`, clean(lines[i].querySelector('.n').textContent).replace(/^[^[]*/, '')];
      });
    });
    assert.ok(pairs.length > 0);
    for (const [table, plot] of pairs) assert.equal(plot, table, name);
    await context.close();
  }
});

test('points lie between the ends of their intervals, on the scale of the axis', async () => {
  const { page, context } = await open('one-sample');
  const found = await page.evaluate(() => {
    const middle = (element) => {
      const box = element.getBoundingClientRect();
      return (box.left + box.right) / 2;
    };
    const axis = [...document.querySelectorAll('.forest svg.axis text:not(.quantity):not(.reference)')]
      .map((text) => [Number(text.textContent), middle(text)]);
    const [[a, x], [b, y]] = [axis[0], axis.at(-1)];
    return [...document.querySelectorAll('.forest li:not(.head)')].map((line) => {
      const at = (pixel) => a + (pixel - x) / (y - x) * (b - a);
      const interval = line.querySelector('.ci').getBoundingClientRect();
      const numbers = line.querySelector('.n').textContent.match(/[\d.]+/g).map(Number);
      return { drawn: [at(middle(line.querySelector('circle'))), at(interval.left), at(interval.right)], numbers };
    });
  });
  for (const { drawn, numbers } of found) {
    drawn.forEach((value, i) => assert.ok(Math.abs(value - numbers[i]) < 0.002, `${value} is drawn for ${numbers[i]}`));
  }
  await context.close();
});

test('what could not be computed is said where the interval would be', async () => {
  const { page, context } = await open('edges');
  assert.ok(await page.locator('.forest .why').count() > 0);
  for (const text of await page.locator('.forest .why').allTextContents()) {
    assert.match(text, /^No interval/);
  }
  await context.close();
});

test('labels that would be markup are text', async () => {
  const { page, problems, context } = await open('hostile');
  assert.equal(await page.evaluate(() => globalThis.broken), undefined);
  assert.equal(await page.locator('img').count(), 0);
  assert.equal(await page.locator('script').count(), 1);
  const text = await page.locator('main').innerText();
  for (const label of hostile.slice(0, 2)) assert.ok(text.includes(label), label);
  assert.deepEqual(problems, []);
  await context.close();
});

test('hidden rows of a hostile report stay text when they are shown', async () => {
  const { page, problems, context } = await open('hostile');
  await page.locator('#query').fill('onerror');
  await page.locator('#query').press('Enter');
  assert.equal(await page.evaluate(() => globalThis.broken), undefined);
  assert.equal(await page.locator('img').count(), 0);
  assert.deepEqual(problems, []);
  await context.close();
});

test('the filter keeps the rows that hold all words, in tables, plots and readings', async () => {
  const { page, context } = await open('split-groups');
  await page.locator('#query').fill('department wilson');
  await page.locator('#query').press('Enter');
  assert.equal(await rowsShown(page), 12);
  assert.equal(await page.locator('#t1 .forest li:not(.head)').count(), 12);
  await page.locator('#query').fill('no such group');
  await page.locator('#query').press('Enter');
  assert.equal(await page.locator('section.result:visible').count(), 0);
  await page.locator('#query').fill('');
  await page.locator('#query').press('Enter');
  assert.equal(await rowsShown(page), 54);
  await context.close();
});

test('everything can be reached with the keyboard', async () => {
  const { page, context } = await open('split-groups');
  await page.keyboard.press('Tab');
  assert.equal(await page.evaluate(() => document.activeElement.className), 'skip');
  await page.keyboard.press('Enter');
  assert.equal(new URL(page.url()).hash, '#results');
  const reached = new Set();
  for (let i = 0; i < 40; ++i) {
    await page.keyboard.press('Tab');
    reached.add(await page.evaluate(() => document.activeElement.className || document.activeElement.localName));
  }
  assert.ok(reached.has('scroll') && reached.has('a'), [...reached].join());
  await context.close();
});

test('without scripts every row of every table is there', async () => {
  const { page, context } = await open('many', { javaScriptEnabled: false });
  assert.equal(await page.locator('#t1 tbody tr:not(.group)').count(), 3 * manyGroups);
  assert.ok(await page.locator('#t1 tbody tr:not(.group)').last().isVisible());
  await context.close();
});

// The size of a report, and the seconds that it takes to open: the best of three, as what else the
// machine does meanwhile is not the report's.
async function cost(name, t) {
  const megabytes = statSync(reports[name]).size / 1e6;
  const opened = [];
  for (let i = 0; i < 3; ++i) {
    const started = performance.now();
    const { page, context } = await open(name);
    await page.evaluate(() => new Promise((done) => { requestAnimationFrame(() => setTimeout(done)); }));
    opened.push((performance.now() - started) / 1000);
    await context.close();
  }
  const seconds = Math.min(...opened);
  t.diagnostic(`${name}: ${megabytes.toFixed(1)} MB, open in ${seconds.toFixed(2)} s`);
  return megabytes;
}

async function find(page, words) {
  await page.locator('#query').fill(words);
  await page.locator('#query').press('Enter');
}

test(`a report of ${manyGroups} groups is small and can be paged and filtered`, async (t) => {
  const megabytes = await cost('many', t);
  assert.ok(megabytes < 20, `${megabytes} MB`);
  const { page, problems, context } = await open('many');
  assert.equal(await rowsShown(page), 201);
  assert.equal(await page.locator('#t1 .forest li:not(.head)').count(), 201);
  await page.locator('#t1 .pager button[value=on]').click();
  assert.equal(await rowsShown(page), 201);
  assert.match(await page.locator('#t1 .pager output').textContent(), /^Rows 202 to 402 of 6000$/);
  await find(page, 'group 1999');
  assert.equal(await rowsShown(page), 3);
  assert.equal(await page.locator('#t1 .forest li:not(.head)').count(), 3);
  assert.match(await page.locator('#t1 .forest li.head').textContent(), /Group 1999/);
  assert.deepEqual(await violations(page), []);
  assert.deepEqual(problems, []);
  await context.close();
});

test(`so does one with tables for each of ${manyGroups} groups`, async (t) => {
  const megabytes = await cost('many-tables', t);
  assert.ok(megabytes < 20, `${megabytes} MB`);
  const { page, problems, context } = await open('many-tables');
  const last = `t${2 * manyGroups}`;
  assert.equal(await page.locator(`#${last}`).count(), 0);
  await page.evaluate((id) => { location.hash = id; }, last);
  await page.locator(`#${last}`).waitFor();
  await page.evaluate(() => { location.hash = ''; });
  await find(page, 'group 1999');
  assert.deepEqual(await page.locator('section.result:visible h2').allTextContents(), [
    'One-Sample Proportions Confidence Intervals (group = Group 1999)',
    'One-Sample Proportions Tests (group = Group 1999)',
  ]);
  assert.deepEqual(problems, []);
  await context.close();
});
