// SPDX-License-Identifier: MIT
// The style sheet of a workout's page.
#pragma once

namespace ipodctl {

// It stands in a page that is XML too, hence no ampersand and no angle bracket.
constexpr const char* kPageStyle = R"css(
:root {
  color-scheme: light dark;
  --page: #f3f5f7; --card: #ffffff; --ink: #1a1f26; --soft: #5a6572; --rule: #e1e5ea;
  --heart: #c62f4b; --speed: #1f62b8; --cadence: #9a5200; --incline: #7440b0; --distance: #1c7c54;
  --pause: #8a94a3;
  --note: #fff6e0; --note-rule: #d99a1c;
}
@media screen and (prefers-color-scheme: dark) {
  :root {
    --page: #101317; --card: #191e24; --ink: #eef1f4; --soft: #a3adb9; --rule: #2d343d;
    --heart: #ff8296; --speed: #79b2ff; --cadence: #f0a95c; --incline: #c4a2f5; --distance: #5fd3a0;
    --pause: #8a94a3;
    --note: #2b2413; --note-rule: #d99a1c;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0; background: var(--page); color: var(--ink);
  font: 1rem/1.5 system-ui, -apple-system, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif;
  -webkit-text-size-adjust: 100%; overflow-wrap: anywhere;
}
main { max-width: 54rem; margin: 0 auto; padding: 2rem 1rem 3rem; }
h1 { margin: 0; font-size: 1.9rem; line-height: 1.2; letter-spacing: -0.01em; }
h2 { margin: 0 0 0.9rem; font-size: 1.05rem; }
p { margin: 0; }
.lead { margin-top: 0.25rem; color: var(--soft); }
section, .note { margin-top: 1.25rem; padding: 1.25rem; border-radius: 12px; }
section { background: var(--card); border: 1px solid var(--rule); }
.note { background: var(--note); border-left: 5px solid var(--note-rule); padding: 0.8rem 1.1rem; }
.note strong { display: block; }
table { width: 100%; border-collapse: collapse; }
th, td { padding: 0; text-align: left; font-weight: inherit; overflow-wrap: anywhere; }
th { color: var(--soft); font-size: 0.9rem; }
.summary tbody {
  display: grid; gap: 1.25rem 0.75rem;
  grid-template-columns: repeat(auto-fit, minmax(7.4rem, 1fr));
}
.summary tr { display: block; }
.summary th, .summary td { display: block; }
.summary td { font-variant-numeric: tabular-nums; }
.summary b { font-size: 1.55rem; line-height: 1.25; letter-spacing: -0.01em; }
.summary small { display: block; color: var(--soft); font-size: 0.82rem; }
.unit { color: var(--soft); font-size: 0.85rem; }
figure { margin: 0; }
figcaption { margin-top: 0.6rem; color: var(--soft); font-size: 0.85rem; }
svg { display: block; width: 100%; height: auto; overflow: visible; }
svg.narrow { display: none; }
svg text { fill: var(--soft); font-size: 12px; font-variant-numeric: tabular-nums; }
svg .title { font-size: 14px; font-weight: 600; }
.heart { --own: var(--heart); }
.speed { --own: var(--speed); }
.cadence { --own: var(--cadence); }
.incline { --own: var(--incline); }
.distance { --own: var(--distance); }
svg .title tspan { fill: var(--own); }
svg .title .unit { fill: var(--soft); font-size: 13px; font-weight: 400; }
svg .detail, svg .value, svg .key { text-anchor: end; }
svg .time { text-anchor: middle; }
svg .grid { stroke: var(--rule); }
svg .pause { fill: var(--pause); fill-opacity: 0.28; }
svg .line {
  fill: none; stroke-width: 1.75; stroke-linejoin: round; stroke-linecap: round;
}
svg .line { stroke: var(--own); }
svg .area { stroke: none; fill: var(--own); fill-opacity: 0.12; }
figure svg { touch-action: pan-y; }
svg .moment { stroke: var(--soft); stroke-dasharray: 3 3; pointer-events: none; }
svg .dot { fill: var(--own); stroke: var(--card); stroke-width: 1.5; pointer-events: none; }
.values {
  position: sticky; top: 0; z-index: 1; display: flex; flex-wrap: wrap; gap: 0.2rem 1.2rem;
  list-style: none; margin: 0 0 0.9rem; padding: 0.5rem 0; background: var(--card);
  border-bottom: 1px solid var(--rule); font-size: 0.9rem;
}
.values[hidden], .slider[hidden] { display: none; }
.values span { margin-right: 0.35rem; color: var(--own, var(--soft)); }
.values b {
  display: inline-block; min-width: 3.4em; font-weight: 600;
  font-variant-numeric: tabular-nums;
}
.slider { display: flex; align-items: center; gap: 0.75rem; margin-top: 0.6rem; }
.slider label { flex: none; color: var(--soft); font-size: 0.85rem; }
.slider input { flex: 1; min-width: 0; margin: 0; accent-color: var(--speed); }
a { color: var(--speed); }
nav { margin-top: 0.6rem; font-size: 0.9rem; }
.caption { margin-top: 0.8rem; color: var(--soft); font-size: 0.85rem; }
.rows th, .rows td {
  padding: 0.4rem 0.75rem 0.4rem 0; border-top: 1px solid var(--rule); font-size: 0.95rem;
  font-variant-numeric: tabular-nums;
}
.rows thead th, .rows thead td { border-top: 0; font-size: 0.85rem; vertical-align: bottom; }
.rows tbody th { color: var(--ink); }
.rows .bar { width: 34%; padding-right: 0; }
.listed .bar { width: 22%; }
.listed small { color: var(--soft); }
.rows tbody .bar {
  background: linear-gradient(var(--own), var(--own)) left center / var(--share) 0.6rem no-repeat;
}
.facts tbody { display: grid; grid-template-columns: 1fr 1fr; column-gap: 2.5rem; }
.facts tr { display: flex; padding: 0.45rem 0; border-top: 1px solid var(--rule); }
.facts th { flex: 0 0 42%; padding-right: 1rem; font-size: 0.95rem; }
.facts td { flex: 1; }
footer { margin-top: 1.25rem; color: var(--soft); font-size: 0.85rem; overflow-wrap: anywhere; }
@media screen and (max-width: 38rem) {
  main { padding: 1.25rem 0.75rem 2rem; }
  h1 { font-size: 1.6rem; }
  section, .note { padding: 1rem; }
  .summary tbody { grid-template-columns: 1fr 1fr; }
  .summary b { font-size: 1.5rem; }
  .facts tbody { grid-template-columns: 1fr; }
  svg.wide { display: none; }
  svg.narrow { display: block; }
  .rows .bar { width: 18%; }
  .listed thead { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); }
  .listed, .listed tbody { display: block; }
  .listed tr { display: flex; flex-wrap: wrap; padding: 0.4rem 0; border-top: 1px solid var(--rule); }
  .listed tbody tr:first-child { border-top: 0; }
  .listed th, .listed td { flex: none; padding: 0 0.9rem 0 0; border-top: 0; }
  .listed tbody th { flex: 1 0 100%; }
  .listed tbody td { color: var(--soft); font-size: 0.85rem; }
  .rows.listed .bar { display: none; }
  .values { font-size: 0.85rem; gap: 0.1rem 0.9rem; }
}
@media print {
  @page { margin: 14mm; }
  :root { font-size: 10pt; color-scheme: light; --page: #ffffff; --soft: #444c56; --rule: #cfd5dc; }
  main { max-width: none; padding: 0; }
  section { padding: 0; border: 0; border-radius: 0; margin-top: 1.1rem; }
  h2 { margin-bottom: 0.5rem; }
  .summary tbody { grid-template-columns: repeat(auto-fit, minmax(6.6rem, 1fr)); }
  .summary b { font-size: 1.35rem; }
  .facts tr { padding: 0.2rem 0; }
  section, .note, tr { break-inside: avoid; }
  h2 { break-after: avoid; }
  svg .pause { fill-opacity: 0.4; }
  .values, .slider, nav, svg .moment, svg .dot { display: none; }
  .rows th, .rows td { padding-top: 0.15rem; padding-bottom: 0.15rem; }
  .rows .bar { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
}
)css";

}  // namespace ipodctl
