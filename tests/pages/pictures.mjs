// Takes the pictures of reports that the documentation shows.
//
//   node tests/pages/pictures.mjs PROGRAM FOLDER
import { mkdirSync, mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join, resolve } from 'node:path';
import { chromium } from 'playwright-core';

import { makeReports } from './reports.mjs';

const [program, folder] = process.argv.slice(2);
const work = mkdtempSync(join(tmpdir(), 'pictures-'));

// Each: report, width and height of the window, colours, and what stands at its top.
const pictures = {
  'report-light': ['split-groups', 1200, 820, 'light', '#t1'],
  'report-dark': ['paired', 1200, 820, 'dark', '#t2'],
  'report-phone': ['split-groups', 390, 780, 'light', '#t1'],
  'report-head': ['bootstrap', 1200, 820, 'light', 'body'],
  'report-bootstrap': ['bootstrap', 1200, 760, 'light', '#t1'],
  'report-words': ['one-sample', 1200, 700, 'light', '#t2 .words'],
};

const names = [...new Set(Object.values(pictures).map(([report]) => report))];
const reports = makeReports(resolve(program), work, names);
const browser = await chromium.launch({
  executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium', args: ['--no-sandbox'],
});
mkdirSync(folder, { recursive: true });
for (const [name, [report, width, height, colorScheme, top]] of Object.entries(pictures)) {
  const page = await browser.newPage({ viewport: { width, height }, colorScheme });
  await page.goto(`file://${reports[report]}`);
  await page.locator(top).first().evaluate((element) => element.scrollIntoView());
  await page.screenshot({ path: join(folder, `${name}.png`) });
  await page.close();
}
await browser.close();
rmSync(work, { recursive: true, force: true });
