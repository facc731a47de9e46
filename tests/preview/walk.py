#!/usr/bin/env python3
"""Walks an author's ways through the preview's page, in a real browser, against pictures that `render` gives.

tests/preview/walk.py TOOL; `./dev test-preview` installs what it needs.
"""
import base64
import os
import re
import shlex
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path
from urllib.parse import urlsplit

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

TOOL = Path(sys.argv[1]).resolve()
EFFECTS = Path(__file__).resolve().parents[2] / "effects"
SECONDS = 20


def wait(what, is_right):
    end = time.monotonic() + SECONDS
    while time.monotonic() < end:
        try:
            found = is_right()
            if found:
                return found
        except Exception as error:  # the page may be between two states
            what = f"{what} ({error})"
        time.sleep(0.05)
    raise AssertionError("waited in vain for " + what)


class Walk(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        options = webdriver.ChromeOptions()
        for argument in ("--headless=new", "--no-sandbox", "--window-size=1300,800"):
            options.add_argument(argument)
        cls.browser = webdriver.Chrome(service=Service(shutil.which("chromedriver")), options=options)
        cls.browser.execute_cdp_cmd("Browser.grantPermissions", {"permissions": ["clipboardReadWrite", "clipboardSanitizedWrite"]})

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        shutil.copytree(EFFECTS / "grade", self.folder / "fx")
        (self.folder / "tmp").mkdir()
        self.tool("chart", "-o", "chart.png", "--size", "96x64")
        self.browser.set_window_size(1300, 800)
        self.preview = None
        self.addCleanup(self.end)
        self.start("-i", "chart.png")

    def start(self, *arguments):
        self.end()
        self.preview = subprocess.Popen(
            [TOOL, "preview", "fx", *arguments, "--no-browser", "--time-limit", "2"], cwd=self.folder,
            env=os.environ | {"TMPDIR": str(self.folder / "tmp")}, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.address = self.preview.stdout.readline().strip()
        self.browser.get(self.address)
        self.name = wait("a slider", lambda: self.find("[data-kind=FLOAT]").get_attribute("data-name"))
        self.find("#behind [data-value=none]").click()
        self.picture()

    def end(self):
        if not self.preview:
            return
        self.preview.send_signal(signal.SIGINT)
        self.preview.wait(timeout=2)
        self.preview.stdout.close()
        self.preview = None

    def tool(self, *arguments):
        return subprocess.run([TOOL, *arguments], cwd=self.folder, check=True, capture_output=True, text=True).stdout

    def find(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def words(self):
        return self.find("[role=alert]").text

    def picture(self):
        """The canvas as a PNG, once it has come to rest."""
        def look():
            before = self.browser.execute_script("return document.getElementById('picture').toDataURL()")
            time.sleep(0.3)
            after = self.browser.execute_script("return document.getElementById('picture').toDataURL()")
            return after if before == after and len(after) > 200 else None
        return base64.b64decode(wait("a picture", look).split(",")[1])

    def box(self, name=None):
        return self.find(f"[data-name='{name or self.name}'] input[type=number]")

    def enter(self, text):
        box = self.box()
        box.send_keys(Keys.CONTROL + "a")
        box.send_keys(text + Keys.ENTER)

    def expect(self, picture, *arguments):
        (self.folder / "canvas.png").write_bytes(picture)
        self.tool("render", "fx", "-i", "chart.png", "-o", "expected.png", "--frames", "0-0", "--no-alpha",
                  "--depth", "8", *arguments)
        self.tool("compare", "canvas.png", "expected.png")  # fails for any difference

    def follow_the_copied_line(self, picture):
        self.find("#copy").click()
        time.sleep(0.3)
        line = shlex.split(self.browser.execute_script("return navigator.clipboard.readText()"))
        self.assertEqual(line[:2], ["quillon", "render"])
        self.tool(*line[1:], "--no-alpha")
        (self.folder / "canvas.png").write_bytes(picture)
        self.tool("compare", "canvas.png", line[line.index("-o") + 1])
        return line

    def worker(self):
        children = Path(f"/proc/{self.preview.pid}/task/{self.preview.pid}/children").read_text().split()
        for task in Path(f"/proc/{self.preview.pid}/task").iterdir():
            children += (task / "children").read_text().split()
        return int(children[0])

    def test_a_slider_gives_the_bytes_of_render_and_the_command_line_too(self):
        self.expect(self.picture())
        before = self.picture()
        self.enter("0.35")
        wait("another picture", lambda: self.picture() != before)
        moved = self.picture()
        self.expect(moved, "--set", f"{self.name}=0.35")
        self.follow_the_copied_line(moved)
        # A reload of the page keeps what was set.
        self.browser.refresh()
        wait("the value", lambda: self.box().get_attribute("value") == "0.35")
        hosts = self.browser.execute_script(
            "return performance.getEntriesByType('resource').map((entry) => new URL(entry.name).origin)")
        self.assertEqual(set(hosts), {self.browser.execute_script("return location.origin")})

    def test_the_copied_line_makes_frames_of_movies_and_sequences_with_layers(self):
        shutil.rmtree(self.folder / "fx")
        shutil.copytree(EFFECTS / "matte", self.folder / "fx")
        layer = re.search(r'^\S*\s+(\S+)\s+LAYER', self.tool("params", "fx"), re.M).group(1)
        self.tool("chart", "-o", "in.##.png", "--size", "96x64", "--frames", "0-9")
        self.tool("chart", "-o", "movie.mov", "--size", "96x64", "--frames", "0-9")
        self.tool("chart", "-o", "other.png", "--size", "64x96")
        for given in (["-i", "in.##.png", "--frames", "0-9", "--layer", f"{layer}=movie.mov"],
                      ["-i", "movie.mov", "--layer", f"{layer}=in.##.png", "--frames", "2-9", "--depth", "8"],
                      ["-i", "movie.mov", "--layer", f"{layer}=other.png", "--depth", "8"]):
            with self.subTest(given):
                self.start(*given)
                first = self.picture()
                number = self.find("#frame-number")
                number.send_keys(Keys.CONTROL + "a")
                number.send_keys("7" + Keys.ENTER)
                wait("another frame", lambda: self.picture() != first)
                line = self.follow_the_copied_line(self.picture())
                self.assertIn("7-7", line)
                self.assertIn(given[given.index("--layer") + 1], line)

    def test_killed_processes_leave_nothing(self):
        server, worker = urlsplit(self.address), self.worker()
        os.kill(self.preview.pid, signal.SIGKILL)
        self.preview.wait()
        wait("the worker's end", lambda: not Path(f"/proc/{worker}").exists())
        with socket.socket() as other:
            self.assertNotEqual(other.connect_ex((server.hostname, server.port)), 0)
        self.assertEqual(list((self.folder / "tmp").iterdir()), [])

    def test_a_save_is_seen_at_once(self):
        """Prints how long after a save of fx.js the canvas shows it, and fails for half a second."""
        self.tool("chart", "-o", "chart.png", "--size", "960x540")
        for effect in ("grade", "ink", "glow"):
            shutil.rmtree(self.folder / "fx")
            shutil.copytree(EFFECTS / effect, self.folder / "fx")
            script = (self.folder / "fx/fx.js").read_text()
            for name in ("setup", "draw"):
                script = script.replace(f"function {name}()", f"function {name}OfEffect()")

            def save(red):
                (self.folder / "fx/fx.js").write_text(
                    script + "var flat;\nfunction setup() { setupOfEffect(); flat = QL_initShader('flat', "
                    f"'void main() {{ gl_FragColor = vec4({red / 255}, 0.0, 0.0, 1.0); }}'); }}\n"
                    "function draw() { drawOfEffect(); QL_renderShader(flat, QL_getSequenceRT(), true); }\n")

            save(100)
            self.start("-i", "chart.png")
            times = []
            for red in range(110, 180, 10):
                self.browser.execute_script("""
                    const [red] = arguments, canvas = document.getElementById("picture"), context = canvas.getContext("2d");
                    window.seenAt = 0;
                    const look = () => {
                        if (context.getImageData(480, 270, 1, 1).data[0] === red) window.seenAt = Date.now();
                        else requestAnimationFrame(look);
                    };
                    look();""", red)
                saved = time.time()
                save(red)
                seen = wait("the new picture", lambda: self.browser.execute_script("return window.seenAt"))
                times.append(seen - saved * 1000)
            middle = sorted(times)[len(times) // 2]
            print(f"\n{effect}, 960x540: {middle:.0f} ms from a save to the canvas", end="", flush=True)
            self.assertLess(middle, 500)

    def test_saves_update_and_faults_keep_the_picture(self):
        shader = next(iter(sorted((self.folder / "fx").glob("*.frag"))))
        source = shader.read_text()
        untouched = self.picture()
        self.enter("0.35")  # and it keeps this value
        wait("another picture", lambda: self.picture() != untouched)
        first = self.picture()
        shader.write_text("void main() { gl_FragColor = vec4(0.2, 0.4, 0.6, 1.0); }\n")
        wait("the new picture", lambda: self.picture() != first)
        flat = self.picture()
        self.expect(flat)
        shader.write_text(source.replace("void main", "int broken = ;\nvoid main"))
        line = source[:source.index("void main")].count("\n") + 1
        wait("the line", lambda: f"{shader.name}:{line}" in self.words() and "int broken = ;" in self.words())
        self.assertEqual(self.picture(), flat)
        shader.write_text(source)
        wait("the first picture", lambda: self.picture() == first and self.words() == "")

    def test_endless_scripts_and_dead_workers_are_survived(self):
        script = self.folder / "fx/fx.js"
        source = script.read_text()
        first = self.picture()
        script.write_text(source.replace("function draw() {", "function draw() {\n    for (;;) {}"))
        wait("the report", lambda: "still running after 2 s" in self.words() and "fx.js:" in self.words())
        self.assertEqual(self.picture(), first)
        script.write_text(source)
        wait("the end of the report", lambda: self.words() == "")
        os.kill(self.worker(), signal.SIGKILL)
        self.enter("0.4")
        wait("a picture of a new worker", lambda: self.picture() != first)
        self.expect(self.picture(), "--set", f"{self.name}=0.4")

    def test_the_keyboard_is_enough(self):
        first = self.picture()
        body = self.find("body")
        for _ in range(60):
            self.browser.switch_to.active_element.send_keys(Keys.TAB)
            focus = self.browser.switch_to.active_element
            if focus.get_attribute("type") == "range" and focus.get_attribute("closest") is None and \
                    self.browser.execute_script("return arguments[0].closest('#controls') !== null", focus):
                break
        self.assertTrue(focus.get_attribute("aria-label"))
        focus.send_keys(Keys.ARROW_RIGHT * 3)
        wait("another picture", lambda: self.picture() != first)
        self.browser.execute_script("document.activeElement.blur()")
        body.send_keys(Keys.END)
        wait("the last frame", lambda: self.find("#frame-number").get_attribute("value") == "99")
        body.send_keys("?")
        self.assertTrue(self.find("#help").is_displayed())
        body.send_keys(Keys.ESCAPE)
        self.browser.set_window_size(900, 700)
        self.assertFalse(self.browser.execute_script(
            "return document.documentElement.scrollWidth > innerWidth"), "the page is wider than the window")
        unnamed = self.browser.execute_script("""
            return [...document.querySelectorAll('button, input, select')].filter((element) => element.offsetParent &&
                !(element.getAttribute('aria-label') || element.labels?.length || element.textContent.trim()))
                .map((element) => element.outerHTML)""")
        self.assertEqual(unnamed, [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
