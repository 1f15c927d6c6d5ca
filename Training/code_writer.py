# SPDX-License-Identifier: MIT
"""Makes up lines as they stand in terminals and editors: out of the texts gathered, and of its own where a program would print numbers."""
import string

# ASCII and the marks of code that the model it begins from knows, and what it is to learn.
ALPHABET = "".join(map(chr, range(32, 127))) + "©®€£¥§—‘’“”«»°é™¢^`…–•→│─├└·"
USERS = "root www-data postgres nobody anna daemon mail systemd+ messagebus kim tom".split()
NAMES = "main util config parser index server client test_io README Makefile setup data log cache node_modules build src lib core app view model".split()
ENDINGS = ".py .cpp .h .c .js .json .txt .md .sh .conf .log .go .rs .xml .html .yml .tar.gz .so.1 .o".split()
MONTHS = "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()
# Of what looks alike: what a line of random characters is made of as often as of all the others.
ALIKE = "0O08B6@G1lI|!i7T5S2Z'\"`.,:;-_~=+*^{}[]()<>/\\$#%&?cCoOvVwWxXuUkKpPsSzZ"
MARKS = ["->", "=>", "::", "//", "/*", "*/", "&&", "||", "==", "!=", "<=", ">=", "+=", "-=", "++", "--", "<<", ">>", "...", "()", "[]", "{}", "</", "/>", "${", "$(", "@@", "***", "###", "---", "===", "~~~", "^^^", "'''", '"""', "``", "``` ", "|", "~/", "../", "./", "#!", "$1", "$?", ":=", "<-", "?:", "%s", "%d", "\\n", "&amp;", "0x"]


class Writer:
    def __init__(self, texts, alphabet, rng):
        """`texts`: lines by kind; `alphabet`: what may stand in a line."""
        self.texts, self.alphabet, self.rng = texts, set(alphabet), rng
        self.printed = [self.listing, self.process, self.commit, self.status, self.prompt, self.logged, self.numbers, self.trace, self.package, self.rule, self.pointer]

    def number(self):
        r = self.rng
        return r.choice([
            lambda: str(r.randrange(10 ** r.randrange(1, 8))), lambda: f"{r.randrange(100)}.{r.randrange(10)}", lambda: f"0x{r.randrange(16 ** 8):0{r.choice([2, 4, 8])}x}",
            lambda: f"{r.randrange(24):02}:{r.randrange(60):02}", lambda: f"{r.randrange(24):02}:{r.randrange(60):02}:{r.randrange(60):02}.{r.randrange(1000):03}",
            lambda: f"{r.randrange(1990, 2035)}-{r.randrange(1, 13):02}-{r.randrange(1, 29):02}", lambda: f"{r.randrange(101)}%", lambda: f"{r.randrange(10)}.{r.randrange(30)}.{r.randrange(30)}-{r.randrange(9)}",
            lambda: ".".join(str(r.randrange(256)) for _ in range(4)), lambda: self.hexadecimal(r.choice([7, 8, 12, 16])), lambda: f"{r.randrange(1000)}{r.choice('KMG')}", lambda: f"{r.random():.{r.randrange(1, 7)}f}",
            lambda: f"{r.randrange(1, 1000)},{r.randrange(1000):03}", lambda: f"1e-{r.randrange(1, 20):02}", lambda: f"[{r.randrange(100)}]", lambda: f":{r.randrange(10000)}"])()

    def hexadecimal(self, length):
        return "".join(self.rng.choice("0123456789abcdef") for _ in range(length))

    def name(self):
        r = self.rng
        name = r.choice(NAMES)
        if r.random() < .4:
            name += r.choice("_-.") + r.choice([r.choice(NAMES), str(r.randrange(100))])
        return name + (r.choice(ENDINGS) if r.random() < .7 else "")

    def path(self):
        r = self.rng
        return r.choice(["/", "~/", "./", "../", "/usr/", "/etc/", "/home/" + r.choice(USERS) + "/", ""]) + "/".join(self.name() for _ in range(r.randrange(1, 4)))

    def code(self):
        r = self.rng
        kind = r.choices(["code", "manual", "page"], [70, 15, 15])[0]
        return r.choice(self.texts.get(kind) or self.texts["code"])

    def listing(self):
        r = self.rng
        mode = r.choice("-d-l-") + "".join(c if r.random() < .6 else "-" for c in "rwxrwxrwx")
        size = str(r.randrange(10 ** r.randrange(1, 8))) if r.random() < .7 else f"{r.randrange(10)}.{r.randrange(10)}{r.choice('KMG')}"
        when = r.choice([f"{r.randrange(24):02}:{r.randrange(60):02}", f" {r.randrange(1990, 2035)}"])
        return f"{mode} {r.randrange(1, 40):2} {r.choice(USERS):8} {r.choice(USERS):8} {size:>8} {r.choice(MONTHS)} {r.randrange(1, 32):2} {when} {self.name()}"

    def process(self):
        r = self.rng
        return f"{r.choice(USERS):8} {r.randrange(1, 99999):6} {r.random() * 20:4.1f} {r.random() * 9:4.1f} {r.randrange(999999):6} {r.randrange(99999):5} {r.choice(['?', 'pts/0', 'tty1']):8} {r.choice(['Ss', 'S<', 'Sl+', 'R+', 'I', 'Z'])} {r.randrange(24):02}:{r.randrange(60):02} {r.randrange(99):3}:{r.randrange(60):02} {r.choice([self.path(), '[kworker/' + str(r.randrange(9)) + ':1H]'])}"

    def commit(self):
        r = self.rng
        return r.choice([lambda: f"commit {self.hexadecimal(40)}", lambda: f"{self.hexadecimal(7)} {self.code().strip()}", lambda: f"index {self.hexadecimal(7)}..{self.hexadecimal(7)} 100644", lambda: f"@@ -{r.randrange(999)},{r.randrange(30)} +{r.randrange(999)},{r.randrange(30)} @@ {self.code().strip()}",
                         lambda: f" {self.path()} | {r.randrange(99):2} {'+' * r.randrange(9)}{'-' * r.randrange(9)}", lambda: f"--- a/{self.path()}", lambda: f"+++ b/{self.path()}", lambda: r.choice("+-") + self.code(),
                         lambda: f"{r.randrange(9)} files changed, {r.randrange(99)} insertions(+), {r.randrange(99)} deletions(-)"])()

    def status(self):
        r = self.rng
        return r.choice([" M ", "?? ", "A  ", "MM ", "R  ", " D "]) + self.path()

    def prompt(self):
        r = self.rng
        start = r.choice([f"{r.choice(USERS)}@{self.name()}:~$ ", f"{r.choice(USERS)}@host{r.randrange(20)}:{self.path()}# ", "$ ", "# ", ">>> ", "... ", "(venv) $ ", "% ", "> ", f"In [{r.randrange(99)}]: "])
        command = r.choice([lambda: f"ls -la {self.path()}", lambda: f"grep -rn '{r.choice(NAMES)}' {self.path()} | wc -l", lambda: f"cd {self.path()} && make -j{r.randrange(1, 33)}", lambda: f"curl -sS https://{r.choice(NAMES)}.example.org:{r.randrange(9999)}/{self.name()}?id={r.randrange(999)}",
                            lambda: f"git log --oneline -{r.randrange(1, 99)}", lambda: f"echo \"${{{r.choice(NAMES).upper()}:-{r.randrange(99)}}}\" >> {self.name()}", lambda: f"for i in $(seq {r.randrange(99)}); do echo $i; done", lambda: f"cat {self.path()} 2>/dev/null", lambda: f"kill -9 {r.randrange(99999)}", lambda: f"ssh -p {r.randrange(9999)} {r.choice(USERS)}@10.0.{r.randrange(256)}.{r.randrange(256)}",
                            lambda: f"tar xzf {self.name()} -C /tmp/{self.hexadecimal(6)}", lambda: f"awk '{{ print ${r.randrange(9)} }}' {self.name()}", lambda: f"chmod {r.randrange(8)}{r.randrange(8)}{r.randrange(8)} {self.path()}", lambda: self.code().strip()])()
        return start + command

    def logged(self):
        r = self.rng
        level = r.choice(["INFO", "WARN", "ERROR", "DEBUG", "[error]", "<notice>"])
        return r.choice([f"{r.choice(MONTHS)} {r.randrange(1, 29):2} {r.randrange(24):02}:{r.randrange(60):02}:{r.randrange(60):02} host{r.randrange(9)} {self.name()}[{r.randrange(99999)}]: ", f"[{r.randrange(99999):5}.{r.randrange(999999):06}] ", f"{r.randrange(1990, 2035)}-{r.randrange(1, 13):02}-{r.randrange(1, 29):02}T{r.randrange(24):02}:{r.randrange(60):02}:{r.randrange(60):02}Z {level} "]) + r.choice([self.code().strip(), f"{self.number()} {self.number()}", self.path()])

    def numbers(self):
        return " ".join(self.number() for _ in range(self.rng.randrange(1, 7)))

    def trace(self):
        r = self.rng
        return r.choice([f'  File "{self.path()}", line {r.randrange(2000)}, in {r.choice(NAMES)}', f"{self.path()}:{r.randrange(2000)}:{r.randrange(99)}: error: {self.code().strip()}", f"    at {r.choice(NAMES)} ({self.path()}:{r.randrange(999)}:{r.randrange(99)})", f"#{r.randrange(20):<2} 0x{self.hexadecimal(16)} in {r.choice(NAMES)} () from {self.path()}"])

    def package(self):
        r = self.rng
        return f"ii  {r.choice(['lib', 'python3-', 'golang-', ''])}{r.choice(NAMES)}{r.randrange(9)}:amd64   {r.choice(['', '1:', '2:'])}{r.randrange(20)}.{r.randrange(30)}.{r.randrange(30)}{r.choice(['+dfsg', '~rc1', '+b1', ''])}-{r.randrange(9)}{r.choice(['', '+deb12u' + str(r.randrange(9))])}   {r.choice(['amd64', 'all'])}   {self.code().strip()}"

    def rule(self):
        r = self.rng
        return r.choice("-=#*^~+_.") * r.randrange(3, 30)

    def pointer(self):
        r = self.rng
        return " " * r.randrange(4) + r.choice(["^", "~"]) * r.randrange(1, 12) + r.choice(["", " " + self.code().strip()])

    def random_line(self):
        r = self.rng
        words = []
        for _ in range(r.randrange(1, 7)):
            x = r.random()
            words.append(r.choice(MARKS) if x < .25 else "".join(r.choice(ALIKE if x < .7 else string.printable[:94]) for _ in range(r.randrange(1, 12))))
        return " ".join(words)

    def cut(self, line):
        """At most as long as a row on a screen, often shorter, as shorter ones are learnt from more cheaply."""
        r = self.rng
        most = r.choices([12, 20, 30, 44, 60, 80, 110], [10, 20, 25, 20, 13, 8, 4])[0]
        indentation = len(line) - len(line.lstrip())
        body = line.strip()
        if len(body) > most:
            words, at = body.split(" "), 0
            if r.random() < .6:
                at = r.randrange(len(words))
            body = ""
            for word in words[at:]:
                if len(body) + len(word) + 1 > most:
                    break
                body += (" " if body else "") + word
            body = body.strip() or words[at][:most]
        return " " * min(indentation, r.choice([0, 0, 4, 8])) + body

    def line(self):
        """A line of the alphabet, without its blanks at the end, and whether it stands among lines that are read from the right: never."""
        r = self.rng
        while True:
            x = r.random()
            line = self.code() if x < .55 else r.choice(self.printed)() if x < .88 else self.random_line()
            line = self.cut(line)
            if r.random() < .03:
                line = line.replace('"', r.choice("“”"), 1).replace("'", "’", 1)
            if r.random() < .02:
                line = line + r.choice([" …", " – ", " — ", " • ", " → ", " · ", "…"]) + r.choice(NAMES)
            if r.random() < .02:
                line = r.choice(["│ ", "├── ", "└── ", "│   ├── ", "│   └── "]) + line.strip()
            if line.strip() and all(c in self.alphabet for c in line):
                return line.rstrip(), False
