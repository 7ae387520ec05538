// The page in a real browser: its text, and that nothing sticks out on a phone or a desk.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "kvstation/platform/Files.h"
#include "kvstation/report/HtmlView.h"
#include "tests/kvstation/RunningProgram.h"
#include "tests/kvstation/Samples.h"
#include "tests/kvstation/TemporaryFolder.h"

namespace kvstation {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kBrowser = "/usr/bin/chromium";

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

// Shows the page in a frame of that width and writes down what a person would see of it.
std::string surroundings(const std::string& page, unsigned width) {
    return "<!DOCTYPE html><meta charset=\"utf-8\"><meta name=\"color-scheme\" content=\"light dark\"><body><iframe "
           "style=\"border:0;width:" +
           std::to_string(width) + "px;height:800px\" srcdoc=\"" +
           replaced(replaced(page, "&", "&amp;"), "\"", "&quot;") +
           R"html("></iframe><pre id="seen"></pre><script>
addEventListener('load', () => {
  const root = document.querySelector('iframe').contentDocument.documentElement;
  const sticksOut = e => e.getBoundingClientRect().right > root.clientWidth + 0.5;
  // How much brighter the one is than the other, by the formula of the guidelines for readable pages.
  const numbers = colour => colour.match(/[\d.]+/g).map(Number);
  const linear = c => c / 255 <= 0.04045 ? c / 255 / 12.92 : ((c / 255 + 0.055) / 1.055) ** 2.4;
  const light = ([r, g, b]) => 0.2126 * linear(r) + 0.7152 * linear(g) + 0.0722 * linear(b) + 0.05;
  const contrast = (a, b) => Math.max(light(a) / light(b), light(b) / light(a));
  const backgroundOf = e => {
    const colour = numbers(getComputedStyle(e).backgroundColor);
    return colour[3] === 0 ? backgroundOf(e.parentElement) : colour;
  };
  const hasText = e => [...e.childNodes].some(n => n.nodeType == 3 && n.data.trim());
  const isFaint = e => contrast(numbers(getComputedStyle(e).color), backgroundOf(e)) < 4.5;
  document.getElementById('seen').textContent = JSON.stringify({
    width: root.clientWidth,
    scrollWidth: root.scrollWidth,
    outside: [...root.querySelectorAll('body *')].filter(sticksOut).map(e => e.outerHTML.slice(0, 80)),
    unseen: [...root.querySelectorAll('h1, h2, .value, .bar, .map')]
      .filter(e => e.getClientRects().length == 0).map(e => e.outerHTML.slice(0, 80)),
    pageIsDark: light(backgroundOf(root.querySelector('body'))) < 0.2,
    faint: [...root.querySelectorAll('body :not(svg *)')].filter(e => hasText(e) && isFaint(e))
      .map(e => e.outerHTML.slice(0, 80)),
    mapHeight: root.querySelector('.map').getBoundingClientRect().height,
    text: root.querySelector('body').innerText,
  });
});
</script>)html";
}

std::string unescaped(const std::string& text) {
    return replaced(replaced(replaced(text, "&lt;", "<"), "&gt;", ">"), "&amp;", "&");
}

class Page : public testing::TestWithParam<unsigned> {
  protected:
    void SetUp() override {
        if (!std::filesystem::exists(kBrowser))
            GTEST_SKIP() << "the browser is missing: install the package chromium";
    }

    // What the browser makes of the record's page.
    nlohmann::json seen(const RecordBytes& bytes, bool inTheDark = false) {
        const TemporaryFolder folder;
        const std::string file = folder / "surroundings.html";
        writeFile(file, surroundings(htmlView({Record(bytes), bytes, "Windows 11", "a test"}), GetParam()));
        const ProgramRun browser =
            runProgram({"/usr/bin/timeout", "90", kBrowser, "--headless", "--no-sandbox", "--disable-gpu",
                        "--hide-scrollbars", "--disable-dev-shm-usage", "--window-size=1400,900",
                        std::string("--blink-settings=preferredColorScheme=") + (inTheDark ? "0" : "1"),
                        "--user-data-dir=" + (folder / "profile"), "--dump-dom", "file://" + file});
        const std::size_t begin = browser.output.find("<pre id=\"seen\">{");
        const std::size_t end = browser.output.find("}</pre>", begin);
        if (begin == std::string::npos || end == std::string::npos)
            throw std::runtime_error("the browser shows nothing, status " + std::to_string(browser.status) + ": " +
                                     browser.errors);
        return nlohmann::json::parse(unescaped(browser.output.substr(begin + 15, end + 1 - (begin + 15))));
    }

    void expectNothingSticksOut(const nlohmann::json& page) {
        EXPECT_EQ(page["width"], GetParam());
        EXPECT_LE(page["scrollWidth"], GetParam());
        EXPECT_THAT(page["outside"], IsEmpty());
        EXPECT_THAT(page["unseen"], IsEmpty());
        EXPECT_GT(page["mapHeight"], 300);
    }
};

TEST_P(Page, AnOrdinaryRecordFits) {
    const nlohmann::json page = seen(sampleBytes());
    expectNothingSticksOut(page);
    const std::string text = page["text"];
    for (const char* word : {"PC-LAB3", "jdoe", "10.0.0.5", "Windows 11", "149.0 GB, 41% free", "The record's bytes"})
        EXPECT_THAT(text, HasSubstr(word));
    const Field& os = fields()[findField("szOS")];
    EXPECT_THAT(text, HasSubstr(hexOffset(os.offset) + ", 29 of " + std::to_string(os.limit) + " bytes"));
}

TEST_P(Page, StandsOutFromItsBackgroundByDayAndNight) {
    for (const bool inTheDark : {false, true}) {
        const nlohmann::json page = seen(sampleBytes(), inTheDark);
        EXPECT_EQ(page["pageIsDark"], inTheDark);
        EXPECT_THAT(page["faint"], IsEmpty());
    }
}

TEST_P(Page, FieldsFullOfOneLongWordFit) {
    RecordBytes bytes;
    bytes.fill('W');
    expectNothingSticksOut(seen(bytes));
}

TEST_P(Page, FieldsFullOfMarkupAreText) {
    RecordBytes bytes{};
    for (const Field& field : fields())
        if (field.type == FieldType::Text)
            put(bytes, field.offset, std::string("<img src=x onerror=a()>&lt;").substr(0, field.limit));
    const nlohmann::json page = seen(bytes);
    expectNothingSticksOut(page);
    EXPECT_THAT(page["text"].get<std::string>(), HasSubstr("<img src=x onerror=a()>&lt;"));
}

INSTANTIATE_TEST_SUITE_P(Widths, Page, testing::Values(360u, 1280u),
                         [](const auto& width) { return "At" + std::to_string(width.param) + "Pixels"; });

}  // namespace
}  // namespace kvstation
