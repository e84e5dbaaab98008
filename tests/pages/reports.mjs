// The reports that the page tests open: data, command line and what is special about each.
import { execFileSync } from 'node:child_process';
import { mkdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

const examples = new URL('../../examples/', import.meta.url).pathname;

// Labels that would be markup, script or a break-out, if a page let them.
export const hostile = [
  '<script>window.broken = 1</script>',
  '"><img src=x onerror="window.broken = 2">',
  "' onmouseover='window.broken = 3",
  '</title></style></script><svg onload="window.broken = 4">',
  '&lt;b&gt; & \u202e desrever',
];

// Data whose labels, values and titles are all hostile.
function writeHostile(folder) {
  const rows = hostile.flatMap((label) => ['yes', 'no', 'yes'].map((value) => [label, value]));
  const quoted = (text) => `"${text.replaceAll('"', '""')}"`;
  const lines = [['place', 'answer'], ...rows].map((row) => row.map(quoted).join(','));
  writeFileSync(join(folder, 'hostile.csv'), lines.join('\n') + '\n');
  const schema = {
    fields: [
      { name: 'place', type: 'string', title: hostile[0] },
      { name: 'answer', type: 'string', title: hostile[1],
        categories: [{ value: 'yes', label: hostile[2] }, { value: 'no', label: hostile[3] }] },
    ],
  };
  writeFileSync(join(folder, 'hostile.schema.json'), JSON.stringify(schema));
}

// Groups where nothing, everything or a single case is a success, and one without cases.
function writeEdges(folder) {
  const rows = [];
  for (const [place, values] of Object.entries({ all: '1111', none: '000', one: '1', gone: '..' })) {
    for (const value of values) rows.push(`${place},${value === '.' ? '' : value}`);
  }
  writeFileSync(join(folder, 'edges.csv'), `place,answer\n${rows.join('\n')}\n`);
}

function writeMany(folder, groups) {
  const lines = ['group,answer,count'];
  for (let g = 1; g <= groups; ++g) {
    lines.push(`Group ${g},1,${5 + (g * 7) % 40}`, `Group ${g},0,${5 + (g * 13) % 60}`);
  }
  writeFileSync(join(folder, 'many.csv'), lines.join('\n') + '\n');
}

export const manyGroups = 2000;

const oneSample = 'PROPORTIONS /ONESAMPLE admitted TESTVAL=0.3 CITYPES=ALL TESTTYPES=ALL';

const commands = {
  'one-sample': [`${examples}admissions.csv`, '-c', oneSample, '--sentences'],
  'split-groups': [`${examples}admissions.csv`, '-c', oneSample, '--split', 'department'],
  'own-tables': [`${examples}admissions.csv`, '-c',
    'PROPORTIONS /ONESAMPLE admitted TESTVAL=0.3', '--split', 'department,gender',
    '--split-layout', 'tables'],
  bootstrap: [`${examples}admissions.csv`, '-c', 'PROPORTIONS /INDEPENDENTSAMPLES admitted BY gender',
    '--bootstrap', '500', '--seed', '7'],
  paired: [`${examples}approval.csv`, '-c',
    'PROPORTIONS /PAIREDSAMPLES first second CITYPES=ALL TESTTYPES=ALL', '--sentences'],
  hostile: ['hostile.csv', '-c',
    'PROPORTIONS /ONESAMPLE answer CITYPES=ALL /SUCCESS VALUE=LEVEL("yes")', '--split', 'place'],
  edges: ['edges.csv', '-c', 'PROPORTIONS /ONESAMPLE answer CITYPES=ALL TESTTYPES=ALL',
    '--split', 'place'],
  german: [`${examples}approval.csv`, '-c', 'PROPORTIONS /PAIREDSAMPLES first second',
    '--language', 'de', '--sentences'],
  chinese: [`${examples}admissions.csv`, '-c', 'PROPORTIONS /INDEPENDENTSAMPLES admitted BY gender',
    '--language', 'zh-CN', '--split', 'department'],
  many: ['many.csv', '-c', 'PROPORTIONS /ONESAMPLE answer TESTVAL=0.5 CITYPES=WALD WILSON_SCORE JEFFREYS',
    '--weight', 'count', '--split', 'group'],
  'many-tables': ['many.csv', '-c', 'PROPORTIONS /ONESAMPLE answer TESTVAL=0.5',
    '--weight', 'count', '--split', 'group', '--split-layout', 'tables'],
};

// Writes all reports, or those of these names, into `folder` with the program; gives their paths.
export function makeReports(program, folder, names = Object.keys(commands)) {
  mkdirSync(folder, { recursive: true });
  writeHostile(folder);
  writeEdges(folder);
  writeMany(folder, manyGroups);
  const paths = {};
  for (const name of names) {
    paths[name] = join(folder, `${name}.html`);
    execFileSync(program, ['run', ...commands[name], '--quiet', '-o', paths[name]], { cwd: folder });
  }
  return paths;
}
