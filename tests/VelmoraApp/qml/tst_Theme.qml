import QtQuick
import QtTest
import Velmora.Style

TestCase {
    name: "Theme"

    // WCAG 2.1.
    function channel(value) {
        return value <= 0.03928 ? value / 12.92 : Math.pow((value + 0.055) / 1.055, 2.4);
    }
    function luminance(shade) {
        return 0.2126 * channel(shade.r) + 0.7152 * channel(shade.g) + 0.0722 * channel(shade.b);
    }
    function contrast(one, other) {
        const both = [luminance(one), luminance(other)];
        return (Math.max(...both) + 0.05) / (Math.min(...both) + 0.05);
    }
    function over(front, back) {
        return Qt.rgba(front.r * front.a + back.r * (1 - front.a), front.g * front.a + back.g * (1 - front.a), front.b * front.a + back.b * (1 - front.a), 1);
    }

    function cleanup() {
        Theme.dark = false;
    }

    function test_textCanBeRead_data() {
        const surfaces = ["window", "sidebar", "card", "control", "controlPressed", "well"];
        const rows = [];
        for (const dark of [false, true]) {
            for (const surface of surfaces) {
                for (const ink of ["text", "textSecondary"])
                    rows.push({
                            "tag": `${ink} on ${surface}, ${dark ? "dark" : "light"}`,
                            "dark": dark,
                            "ink": ink,
                            "surface": surface
                        });
            }
            for (const surface of ["window", "card"]) {
                for (const ink of ["accent", "positive", "caution", "danger"])
                    rows.push({
                            "tag": `${ink} on ${surface}, ${dark ? "dark" : "light"}`,
                            "dark": dark,
                            "ink": ink,
                            "surface": surface
                        });
            }
            for (const fill of ["accentFill", "accentFillPressed", "dangerFill", "dangerFillPressed"])
                rows.push({
                        "tag": `textOnAccent on ${fill}, ${dark ? "dark" : "light"}`,
                        "dark": dark,
                        "ink": "textOnAccent",
                        "surface": fill
                    });
            rows.push({
                    "tag": `danger on control, ${dark ? "dark" : "light"}`,
                    "dark": dark,
                    "ink": "danger",
                    "surface": "control"
                });
        }
        return rows;
    }
    function test_textCanBeRead(row) {
        Theme.dark = row.dark;
        verify(contrast(Theme[row.ink], Theme[row.surface]) >= 4.5, contrast(Theme[row.ink], Theme[row.surface]));
    }

    function test_aWordOnItsOwnTintCanBeRead_data() {
        const rows = [];
        for (const dark of [false, true]) {
            for (const surface of ["window", "card"]) {
                for (const ink of ["accent", "positive", "caution", "danger", "textSecondary"])
                    rows.push({
                            "tag": `${ink} on ${surface}, ${dark ? "dark" : "light"}`,
                            "dark": dark,
                            "ink": ink,
                            "surface": surface
                        });
            }
        }
        return rows;
    }
    function test_aWordOnItsOwnTintCanBeRead(row) {
        Theme.dark = row.dark;
        const ink = Theme[row.ink];
        const back = over(Theme.tint(ink), Theme[row.surface]);
        verify(contrast(ink, back) >= 4.5, contrast(ink, back));
    }

    function test_theSelectedSectionCanBeRead_data() {
        return [{
                "tag": "light",
                "dark": false
            }, {
                "tag": "dark",
                "dark": true
            }];
    }
    function test_theSelectedSectionCanBeRead(row) {
        Theme.dark = row.dark;
        const back = over(Theme.selection, Theme.sidebar);
        verify(contrast(Theme.text, back) >= 4.5);
        verify(contrast(Theme.accent, back) >= 3);
    }

    // A control is found by its border or its fill, as WCAG 1.4.11 asks.
    function test_controlsStandOut_data() {
        const rows = [];
        const surfaces = ["window", "sidebar", "card", "control", "controlPressed", "well"];
        for (const dark of [false, true]) {
            for (const line of ["outline", "switchOff"])
                rows.push(...surfaces.map(surface => [dark, line, surface]));
            for (const surface of ["window", "card"])
                rows.push([dark, "accentFill", surface]);
            rows.push([dark, "knob", "switchOff"], [dark, "knob", "accentFill"], [dark, "dangerFill", "window"]);
        }
        return rows.map(row => ({
                        "tag": `${row[1]} on ${row[2]}, ${row[0] ? "dark" : "light"}`,
                        "dark": row[0],
                        "line": row[1],
                        "surface": row[2]
                    }));
    }
    function test_controlsStandOut(row) {
        Theme.dark = row.dark;
        verify(contrast(Theme[row.line], Theme[row.surface]) >= 3, contrast(Theme[row.line], Theme[row.surface]));
    }

    // What shows where the keyboard is stands out from all it may surround.
    function test_theFocusRingStandsOut_data() {
        const rows = [];
        for (const dark of [false, true]) {
            for (const surface of ["window", "sidebar", "card", "control"])
                rows.push({
                        "tag": `${surface}, ${dark ? "dark" : "light"}`,
                        "dark": dark,
                        "surface": surface
                    });
        }
        return rows;
    }
    function test_theFocusRingStandsOut(row) {
        Theme.dark = row.dark;
        verify(contrast(Theme.accent, Theme[row.surface]) >= 3);
    }

    function test_everyDistanceIsOnTheGrid() {
        for (const distance of ["tight", "small", "medium", "large", "wide", "controlHeight", "rowHeight", "headerHeight", "sessionHeight", "sidebarWidth", "pickerWidth", "dialogWidth", "measure"])
            compare(Theme[distance] % Theme.grid, 0, distance);
    }

    function test_darkAndLightDiffer() {
        const light = String(Theme.window);
        Theme.dark = true;
        verify(String(Theme.window) !== light);
    }
}
