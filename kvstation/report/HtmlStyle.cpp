#include "kvstation/report/HtmlStyle.h"

#include <algorithm>

#include "kvstation/record/FieldTable.h"

namespace kvstation {
namespace {

constexpr char kStyle[] = R"css(
:root {
  color-scheme: light dark;
  --page: #f6f6f3; --card: #fff; --text: #22252a; --quiet: #666c76; --line: #e4e4df;
  --filled: 62% 74%; --empty: 45% 93%; --ink: 45% 22%; --mark: 45% 55%; --reserved: #e9e9e4;
}
@media screen and (prefers-color-scheme: dark) {
  :root {
    --page: #16181c; --card: #1e2126; --text: #e4e6ea; --quiet: #9aa1ac; --line: #2f333a;
    --filled: 34% 42%; --empty: 22% 23%; --ink: 45% 92%; --mark: 40% 60%; --reserved: #2a2d33;
  }
}
* { box-sizing: border-box }
body {
  margin: 0 auto; padding: 2.5rem 1.25rem; max-width: 64rem; background: var(--page); color: var(--text);
  font: 16px/1.5 system-ui, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif;
  -webkit-text-size-adjust: 100%;
}
code, .map text, .value { font-family: ui-monospace, Consolas, "DejaVu Sans Mono", Menlo, monospace }
h1 { margin: 0; font-size: 2.25rem; font-weight: 650; line-height: 1.2; overflow-wrap: anywhere }
header { margin: 0 0 2rem }
header p { margin: .25rem 0 0; color: var(--quiet); overflow-wrap: anywhere }
h2 { display: flex; align-items: center; gap: .6rem; margin: 0 0 .5rem; font-size: 1.1rem; font-weight: 600 }
h2 i, .legend i {
  flex: none; width: .8rem; height: .8rem; border-radius: .25rem; background: hsl(var(--hue) var(--mark));
  print-color-adjust: exact; -webkit-print-color-adjust: exact;
}
section, .glance div { background: var(--card); border: 1px solid var(--line); border-radius: .75rem }
section { margin: 1.25rem 0; padding: 1.25rem 1.5rem }
.glance { display: grid; grid-template-columns: repeat(4, minmax(0, 1fr)); gap: 1.25rem; margin: 0 }
.glance div { padding: 1rem 1.5rem; min-width: 0 }
.glance dt { color: var(--quiet); font-size: .85rem }
.glance dd { margin: 0; overflow-wrap: anywhere; font-size: .9rem }
.glance dd.main { font-size: 1.15rem; font-weight: 600 }
.glance span, h2 small { color: var(--quiet) }
h2 small { margin-left: auto; font-size: .8rem; font-weight: 400 }
.fields { margin: 0 }
.fields div {
  display: grid; grid-template-columns: minmax(0, 17rem) minmax(0, 1fr); gap: .1rem 1.5rem; padding: .6rem 0;
  border-top: 1px solid var(--line); scroll-margin-top: 1rem;
}
.fields div:first-child { border-top: 0 }
.fields div:target, .nothing code:target { background: hsl(var(--hue) var(--empty)); border-radius: .4rem }
dt small, dd small { display: block; color: var(--quiet); font-size: .8rem }
.fields dd { margin: 0; min-width: 0 }
.value { display: block; white-space: pre-wrap; overflow-wrap: anywhere; unicode-bidi: isolate; font-size: .95rem }
dt code { font-size: .9rem }
.nothing { margin: .6rem 0 0; color: var(--quiet); font-size: .85rem; overflow-wrap: anywhere }
details { font-size: .85rem; color: var(--quiet); overflow-wrap: anywhere }
summary { cursor: pointer }
details ul { margin: .25rem 0 .5rem; padding-left: 1.1rem }
details b { font-weight: 600; color: var(--text) }
.nothing details { display: inline-block; margin-right: .75rem; vertical-align: top; max-width: 100% }
.names { columns: 14rem; margin: 0; padding-left: 1.1rem; overflow-wrap: anywhere }
.changes { width: 100%; border-collapse: collapse; table-layout: fixed; font-size: .9rem }
.changes th, .changes td {
  padding: .4rem .75rem .4rem 0; border-top: 1px solid var(--line); text-align: left; vertical-align: top;
  font-weight: 400; overflow-wrap: anywhere; white-space: pre-wrap; unicode-bidi: isolate;
}
.changes thead th { border-top: 0; color: var(--quiet); font-size: .8rem }
.unknown { margin: 0 0 1.25rem }
.drives { list-style: none; margin: 0 0 .75rem; padding: 0 }
.drives li { padding: .5rem 0 }
.drives p { display: flex; flex-wrap: wrap; justify-content: space-between; gap: 0 1rem; margin: 0 0 .35rem }
.drives span { color: var(--quiet); overflow-wrap: anywhere }
.bar { height: .7rem; border-radius: .35rem; background: hsl(var(--hue) var(--empty)); overflow: hidden }
.bar b { display: block; height: 100%; background: hsl(var(--hue) var(--mark)) }
.bar, .bar b, .map { print-color-adjust: exact; -webkit-print-color-adjust: exact }
.map { display: block; width: 100%; aspect-ratio: var(--shape) }
.map text { font-size: 1.3px; fill: hsl(var(--hue) var(--ink)); pointer-events: none }
.map .offset { fill: var(--quiet) }
.map .empty { fill: hsl(var(--hue) var(--empty)) }
.map .filled { fill: hsl(var(--hue) var(--filled)) }
.map .reserved { fill: var(--reserved) }
.map a:hover .empty, .map a:focus .empty { fill: hsl(var(--hue) var(--filled)) }
.map a:focus { outline: none }
.legend { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; margin: 0 0 1rem; padding: 0; list-style: none }
.legend li { display: flex; align-items: center; gap: .45rem; color: var(--quiet); font-size: .85rem }
footer { color: var(--quiet); font-size: .8rem; overflow-wrap: anywhere }
@media (max-width: 60rem) {
  .glance { grid-template-columns: repeat(2, minmax(0, 1fr)) }
}
@media (max-width: 40rem) {
  body { padding: 1.25rem .75rem }
  h1 { font-size: 1.7rem }
  header { margin-bottom: 1.25rem }
  section, .glance div { padding: .9rem 1rem }
  section { margin: .75rem 0 }
  .glance { gap: .75rem; grid-template-columns: minmax(0, 1fr) }
  .fields div { grid-template-columns: minmax(0, 1fr) }
  .map { aspect-ratio: auto; height: 27rem; width: calc(100% + var(--margin)); margin-left: calc(0% - var(--margin)) }
  .map a text { display: none }
  .map .offset { font-size: 0 }
}
@media print {
  :root {
    color-scheme: light;
    --page: #fff; --card: #fff; --text: #000; --quiet: #444; --line: #ccc;
  }
  body { padding: 0; max-width: none; font-size: 11pt }
  .glance { grid-template-columns: repeat(2, minmax(0, 1fr)); gap: .75rem }
  section { border: 0; border-top: 1px solid var(--line); border-radius: 0; padding: .75rem 0; margin: .5rem 0 }
  h2, .fields div, .drives li, .glance div, .map { break-inside: avoid }
  h2 { break-after: avoid }
  .fields div { padding: .3rem 0 }
}
)css";

}  // namespace

std::string pageStyle() {
    std::string style = kStyle;
    for (const Group& group : groups())
        style += "." + groupClass(group.name) + " { --hue: " + std::to_string(group.hue) + " }\n";
    return style;
}

std::string groupClass(std::string_view group) {
    return "g" + std::to_string(std::ranges::find(groups(), group, &Group::name) - groups().begin());
}

}  // namespace kvstation
