// Filters and pages long results. A table, its plots and its sentences show the same rows.
// Without this script everything is there at once.
(() => {
  'use strict';
  const form = document.getElementById('find');
  const field = document.getElementById('query');

  const fill = (text, ...values) => text.replace(/\^(\d)/g, (all, n) => values[n - 1]);

  const parsed = (markup) => {
    const template = document.createElement('template');
    template.innerHTML = markup;
    return template.content;
  };

  // What the page holds back as text until it is wanted.
  const takeMore = (element) => {
    const more = element.nextElementSibling;
    if (!more || !more.matches('noscript.more')) return null;
    more.remove();
    return parsed(more.textContent).firstElementChild;
  };

  const isItem = (item) => !item.classList.contains('head');

  // A table of results, with the plots, sentences and pictures that show the same rows.
  class Result {
    constructor(section) {
      this.section = section;
      this.title = section.querySelector('h2').textContent;
      this.table = section.querySelector('table');
      this.total = Number(this.table.dataset.rows);
      this.figures = [...section.querySelectorAll('figure[data-row]')];
      this.start = 0;
      this.page = this.table.querySelectorAll('tbody tr:not(.group)').length;
      this.size = this.page < this.total ? this.page : Infinity;
      this.pager = section.querySelector('.pager');
      if (this.pager) {
        this.pager.addEventListener('click', (event) => this.turn(event.target.value));
        this.tellPage(this.page, this.total);
      }
    }

    // Reads all rows and what goes with them, once.
    read() {
      if (this.rows) return;
      const more = takeMore(this.table);
      if (more) this.table.append(...more.tBodies);
      this.rows = [];
      for (const body of this.table.tBodies) {
        const head = body.querySelector('tr.group');
        for (const row of body.rows) {
          if (row !== head) this.rows.push({ row, head, body });
        }
      }
      this.readSpans();
      this.lists = [...this.section.querySelectorAll('ol[data-rows]')].map((list) => {
        const items = [...list.children, ...(takeMore(list)?.children ?? [])].filter(isItem);
        return { list, items };
      });
      this.matching = this.rows.keys();
    }

    // Labels that span rows, innermost first, with the rows that they span.
    readSpans() {
      this.spans = [];
      this.rows.forEach(({ row }, i) => {
        for (const label of row.querySelectorAll('th[rowspan]')) {
          const rows = this.rows.slice(i, i + label.rowSpan).map((spanned) => spanned.row);
          this.spans.push({ label, rows });
        }
      });
      this.spans.sort((a, b) => a.rows.length - b.rows.length);
    }

    // The words that each row can be found by: those of its labels and of what it belongs to.
    readWords() {
      const spanning = new Map();
      for (const { label, rows } of this.spans) {
        for (const row of rows) spanning.set(row, `${spanning.get(row) ?? ''} ${label.textContent}`);
      }
      this.words = this.rows.map(({ row, head }) => [
        this.title, head?.textContent, spanning.get(row),
        ...[...row.querySelectorAll('th')].map((label) => label.textContent),
      ].join(' ').toLowerCase());
    }

    filter(wanted) {
      this.read();
      if (!this.words) this.readWords();
      this.matching = this.words.keys();
      if (wanted.length) {
        this.matching = [...this.matching].filter((i) => wanted.every((w) => this.words[i].includes(w)));
      }
      this.start = 0;
      this.show();
      return this.matching.length;
    }

    turn(where) {
      if (!where) return;
      this.read();
      if (where === 'all') {
        this.size = this.size === Infinity ? this.page : Infinity;
        this.start = 0;
      } else {
        this.start += where === 'on' ? this.size : -this.size;
      }
      this.start = Math.max(0, this.start);
      this.show();
    }

    show() {
      this.matching = [...this.matching];
      const shown = this.matching.slice(this.start, this.start + this.size);
      const visible = new Set(shown);
      const bodies = new Set(shown.map((i) => this.rows[i].body));
      this.rows.forEach(({ row, head, body }, i) => {
        row.hidden = !visible.has(i);
        if (head) head.hidden = !bodies.has(body);
      });
      this.placeSpans();
      for (const list of this.lists) this.fillList(list, shown);
      for (const figure of this.figures) {
        figure.hidden = !bodies.has(this.rows[figure.dataset.row].body);
      }
      this.section.hidden = this.rows.length > 0 && shown.length === 0;
      this.tellPage(shown.length, this.matching.length);
    }

    // A label stands in the first of its rows that is shown, and spans those that are.
    placeSpans() {
      for (const { label, rows } of this.spans) {
        const seen = rows.filter((row) => !row.hidden);
        if (seen.length) {
          label.rowSpan = seen.length;
          seen[0].prepend(label);
        }
      }
    }

    // The items of the rows that are shown, under the headings of their groups.
    fillList({ list, items }, shown) {
      const children = [];
      let group = null;
      for (const i of shown) {
        const { head } = this.rows[i];
        if (head && head !== group) {
          const heading = document.createElement('li');
          heading.className = 'head';
          heading.textContent = head.textContent;
          children.push(heading);
          group = head;
        }
        children.push(items[i]);
      }
      list.replaceChildren(...children);
    }

    tellPage(count, matching) {
      if (!this.pager) return;
      const [back, on, all] = this.pager.querySelectorAll('button');
      const output = this.pager.querySelector('output');
      this.pager.hidden = false;
      output.textContent = fill(output.dataset.text, count ? this.start + 1 : 0, this.start + count, matching);
      back.disabled = this.start === 0;
      on.disabled = this.start + count >= matching;
      all.setAttribute('aria-pressed', this.size === Infinity);
    }
  }

  const results = [...document.querySelectorAll('section.result')].map((s) => new Result(s));
  let held = [...document.querySelectorAll('noscript.held')];
  const total = results.reduce((sum, result) => sum + result.total, 0) +
    held.reduce((sum, element) => sum + Number(element.dataset.rows), 0);
  const place = document.getElementById('results');
  const end = document.createElement('div');

  // Puts results that were held back in their places.
  const bring = (wanted) => {
    if (!wanted.length) return;
    const taken = new Set(wanted);
    held = held.filter((element) => !taken.has(element));
    for (const element of wanted) {
      const section = parsed(element.textContent).firstElementChild;
      element.replaceWith(section);
      results.push(new Result(section));
    }
  };

  const escaped = (word) => word.replace(/[&<>"']/g, (c) => `&${
    { '&': 'amp', '<': 'lt', '>': 'gt', '"': 'quot', "'": '#39' }[c]};`);

  const search = () => {
    const wanted = field.value.toLowerCase().split(/\s+/).filter(Boolean);
    if (wanted.length) {
      const words = wanted.map(escaped);
      bring(held.filter(({ textContent }) => {
        const text = textContent.toLowerCase();
        return words.every((word) => text.includes(word));
      }));
    }
    const found = results.reduce((sum, result) => sum + result.filter(wanted), 0);
    for (const link of document.querySelectorAll('nav a')) {
      const target = document.getElementById(link.hash.slice(1));
      link.parentElement.hidden = wanted.length > 0 && (!target || target.hidden);
    }
    const output = document.getElementById('found');
    output.textContent = wanted.length ? fill(output.dataset.text, found, total) : '';
  };

  if (total > Number(form.dataset.least)) {
    form.hidden = false;
    let waiting = 0;
    field.addEventListener('input', () => {
      clearTimeout(waiting);
      waiting = setTimeout(search, 120);
    });
    form.addEventListener('submit', (event) => {
      event.preventDefault();
      search();
    });
  }

  // Results that were held back come when the reader gets near them, or follows a link to one.
  if (held.length) {
    place.append(end);
    const watcher = new IntersectionObserver(([entry]) => {
      if (!entry.isIntersecting || field.value) return;
      bring(held.slice(0, 20));
      watcher.unobserve(end);
      if (held.length) watcher.observe(end);
    }, { rootMargin: '1200px' });
    watcher.observe(end);
    const follow = () => {
      const id = location.hash.slice(1);
      if (!id || document.getElementById(id)) return;
      bring(held.filter((element) => element.textContent.includes(`id="${id}"`)).slice(0, 1));
      document.getElementById(id)?.scrollIntoView();
    };
    addEventListener('hashchange', follow);
    follow();
  }
})();
