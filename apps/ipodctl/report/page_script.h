// SPDX-License-Identifier: MIT
// The script of a workout's page: reads values off the chart.
#pragma once

namespace ipodctl {

// The pointer or the slider chooses a moment; a line in the pictures shows which, and a list its
// values. It stands in a page that is XML too, hence no ampersand and no angle bracket that opens.
constexpr const char* kPageScript = R"js(
"use strict";
for (const figure of document.querySelectorAll("figure[data-times]")) {
  const end = Number(figure.dataset.end);
  const times = figure.dataset.times.split(" ").map(Number);
  const values = figure.querySelector(".values");
  const slider = figure.querySelector("input");
  const fields = Array.from(values.querySelectorAll("b"), (field) => ({
    field,
    name: field.previousElementSibling.textContent,
    texts: field.dataset.texts.split("|"),
    heights: field.dataset.heights ? field.dataset.heights.split(" ") : null,
    unit: field.dataset.unit,
    none: field.dataset.none,
  }));
  const charted = fields.filter((field) => field.heights);
  const textAt = (field, i) => {
    if (!field.heights) return field.texts[i];
    return field.texts[i] === "" ? field.none : field.texts[i] + " " + field.unit;
  };
  const add = (svg, tag, name) => {
    const mark = document.createElementNS("http://www.w3.org/2000/svg", tag);
    mark.setAttribute("class", name);
    svg.append(mark);
    return mark;
  };
  const pictures = Array.from(figure.querySelectorAll("svg"), (svg) => {
    const shape = {};
    for (const key of Object.keys(svg.dataset)) shape[key] = Number(svg.dataset[key]);
    return {
      svg,
      shape,
      lines: charted.map(() => add(svg, "line", "moment")),
      dots: charted.map((field) => {
        const name = field.field.previousElementSibling.className;
        return add(svg, "circle", "dot " + name);
      }),
    };
  });
  const mark = (picture, i) => {
    const { shape } = picture;
    const x = shape.left + (times[i] / end) * shape.width;
    charted.forEach((field, panel) => {
      const bottom = shape.top + panel * shape.step + shape.height;
      const line = { x1: x, x2: x, y1: bottom - shape.height, y2: bottom };
      for (const key of Object.keys(line)) picture.lines[panel].setAttribute(key, line[key]);
      const height = field.heights[i];
      const dot = picture.dots[panel];
      dot.setAttribute("r", height === "-" ? 0 : 4);
      dot.setAttribute("cx", x);
      dot.setAttribute("cy", bottom - (height === "-" ? 0 : height / 1000) * shape.height);
    });
  };
  const show = (i, marked) => {
    slider.value = i;
    for (const field of fields) field.field.textContent = textAt(field, i);
    const spoken = charted.map((field) => field.name + " " + textAt(field, i));
    slider.setAttribute("aria-valuetext", [textAt(fields[0], i)].concat(spoken).join(", "));
    if (marked) for (const picture of pictures) mark(picture, i);
  };
  const nearest = (time) =>
    times.reduce((best, at, i) => Math.abs(times[best] - time) > Math.abs(at - time) ? i : best, 0);
  for (const { svg, shape } of pictures) {
    const point = (event) => {
      const box = svg.getBoundingClientRect();
      const x = ((event.clientX - box.left) / box.width) * svg.viewBox.baseVal.width;
      show(nearest(((x - shape.left) / shape.width) * end), true);
    };
    svg.addEventListener("pointermove", point);
    svg.addEventListener("pointerdown", point);
  }
  slider.addEventListener("input", () => show(Number(slider.value), true));
  slider.addEventListener("focus", () => show(Number(slider.value), true));
  for (const hidden of figure.querySelectorAll("[hidden]")) hidden.hidden = false;
  show(0, false);
}
)js";

}  // namespace ipodctl
