# SPDX-License-Identifier: MIT
"""Networks of .traineddata files: read into PyTorch to be trained on, and written back as bytes, which the program's engine reads.

The form is that of Tesseract's small models: [1,H,0,1 Ct3,3,16 Mp3,3 Lfys Lfx Lrx Lfx O1c]: a convolution, the greatest of 3 x 3, an LSTM up
each column whose last state is kept, LSTMs along the line to the right, to the left and to the right again, and one value per code. Sources/TextRecognition/Network
reads the same form and says what the parts of such a file are.
"""
import struct
import unicodedata

import torch
from torch import nn

# Parts of a file, by their number in it.
NETWORK, CHARACTERS, CODES, VERSION = 17, 21, 22, 23
PARTS = 24
# The first characters of a file's list mean: a blank, letters joined, letters broken.
NO_CHARACTERS = 3
# What the weights of a character begin as that the file does not know, and how much less likely: e to the power of it.
LOOKS_LIKE = {"^": "'", "`": "‘", "…": ".", "–": "—", "•": "*", "→": ">", "│": "|", "─": "—", "├": "|", "└": "L", "·": ".", "،": ",", "٪": "%", "ـ": "_", "ß": "B"}
LESS_LIKELY = 3


class Reader:
    def __init__(self, data):
        self.data, self.at = data, 0

    def take(self, count):
        self.at += count
        if self.at > len(self.data):
            raise ValueError("the file is cut off")
        return self.data[self.at - count:self.at]

    def value(self, form):
        return struct.unpack("<" + form, self.take(struct.calcsize("<" + form)))[0]

    def text(self):
        return self.take(self.value("I")).decode()


def read_parts(path):
    """The parts of a file by their number."""
    with open(path, "rb") as file:
        data = file.read()
    count = struct.unpack_from("<I", data)[0]
    offsets = struct.unpack_from(f"<{count}q", data, 4)
    ends = sorted([offset for offset in offsets if offset >= 0] + [len(data)])
    return {part: data[offset:ends[ends.index(offset) + 1]] for part, offset in enumerate(offsets) if offset >= 0}


def write_parts(path, parts):
    offsets, data = [-1] * PARTS, b""
    for part in sorted(parts):
        offsets[part] = 4 + PARTS * 8 + len(data)
        data += parts[part]
    with open(path, "wb") as file:
        file.write(struct.pack(f"<I{PARTS}q", PARTS, *offsets) + data)
    return 4 + PARTS * 8 + len(data)


def read_matrix(reader):
    """Rows of weights, the last column what is added."""
    form, rows, columns = reader.value("B"), reader.value("I"), reader.value("I")
    if not form & 1:
        raise ValueError("weights are not bytes")
    reader.value("b")
    weights = torch.frombuffer(bytearray(reader.take(rows * columns)), dtype=torch.int8).view(rows, columns).float()
    scales = torch.tensor([reader.value("d") for _ in range(reader.value("I"))][:rows])
    return weights * scales[:, None].float()


def write_matrix(weights, form):
    """As bytes, with one scale a row."""
    scales = (weights.abs().amax(1) / 127).clamp_min(1e-9).double()
    values = (weights.double() / scales[:, None]).round().clamp(-127, 127).to(torch.int8)
    return struct.pack("<BIIb", form, *weights.shape, 0) + values.numpy().tobytes() + struct.pack(f"<I{len(scales)}d", len(scales), *scales.tolist())


def read_layers(reader, found, places):
    """Appends every matrix to `found`, an LSTM's four as a list, and where it stands to `places`."""
    def matrix():
        start = reader.at
        weights = read_matrix(reader)
        places.append((start, reader.at))
        return weights
    if reader.value("b") != 0:
        raise ValueError("not a layer")
    kind = reader.text()
    reader.take(2)
    flags, _, _, _ = (reader.value("i") for _ in range(4))
    reader.text()
    if kind in ("Series", "Parallel", "RTLReversed", "XYTranspose", "TTBReversed"):
        for _ in range(reader.value("I")):
            read_layers(reader, found, places)
        if flags & 64:
            reader.take(4 * reader.value("I"))
    elif kind in ("LSTM", "SummLSTM"):
        reader.value("i")
        found.append([matrix() for _ in range(4)])
    elif kind in ("Convolve", "Maxpool"):
        reader.take(8)
    elif kind == "Input":
        found.append([reader.value("i") for _ in range(5)])
    else:
        found.append(matrix())


def lstm_of(gates, inputs):
    """Gates as stored: what enters the cell, input, forget, output; in each the columns of the input, the cells, what is added."""
    order = [gates[1], gates[2], gates[0], gates[3]]
    net = nn.LSTM(inputs, gates[0].shape[0], batch_first=True)
    with torch.no_grad():
        net.weight_ih_l0.copy_(torch.cat([gate[:, :inputs] for gate in order]))
        net.weight_hh_l0.copy_(torch.cat([gate[:, inputs:-1] for gate in order]))
        net.bias_ih_l0.copy_(torch.cat([gate[:, -1] for gate in order]))
        net.bias_hh_l0.zero_()
    return net


def gates_of(lstm):
    added = lstm.bias_ih_l0 + lstm.bias_hh_l0
    i, f, g, o = (torch.cat([a, b, c[:, None]], 1) for a, b, c in zip(lstm.weight_ih_l0.chunk(4), lstm.weight_hh_l0.chunk(4), added.chunk(4)))
    return [g, i, f, o]


def model_for(character, known):
    """The character of `known` that it looks like."""
    base = unicodedata.normalize("NFD", character)[0]
    return next(like for like in (LOOKS_LIKE.get(character), base, "-") if like in known)


class LineNet(nn.Module):
    """A file's network with its own codes, and further ones for the characters of `alphabet` that it does not know."""
    column_width = 3

    def __init__(self, path, alphabet=""):
        super().__init__()
        parts = read_parts(path)
        reader, found = Reader(parts[NETWORK]), []
        read_layers(reader, found, [])
        shape, conv, down, right, left, last, out = found
        reader.text()
        reader.take(12)
        self.nothing, self.height = reader.value("i"), shape[1]
        self.conv = nn.Conv2d(1, conv.shape[0], 3, padding=1)
        with torch.no_grad():
            self.conv.weight.copy_(conv[:, :-1].view(-1, 1, 3, 3).transpose(2, 3))
            self.conv.bias.copy_(conv[:, -1])
        self.pool = nn.MaxPool2d(3)
        self.down = lstm_of(down, conv.shape[0])
        self.right = lstm_of(right, self.down.hidden_size)
        self.left = lstm_of(left, self.right.hidden_size)
        self.far = lstm_of(last, self.left.hidden_size)
        self.code_of = {}
        names = [line.split(" ")[0] for line in parts[CHARACTERS].decode().split("\n")[1:]]
        reader = Reader(parts[CODES])
        for index in range(reader.value("I")):
            reader.value("b")
            codes = [reader.value("i") for _ in range(reader.value("i"))]
            if len(codes) != 1:
                raise ValueError("characters of several codes")
            if index == 0:
                self.code_of[" "] = codes[0]
            elif index >= NO_CHARACTERS:
                self.code_of.setdefault(names[index], codes[0])
        known = dict(self.code_of)
        self.added = "".join(c for c in dict.fromkeys(alphabet) if c not in known)
        for index, character in enumerate(self.added):
            self.code_of[character] = out.shape[0] + index
        self.text_of = {code: character for character, code in self.code_of.items()}
        self.last = nn.Linear(out.shape[1] - 1, out.shape[0] + len(self.added))
        with torch.no_grad():
            self.last.weight[:out.shape[0]] = out[:, :-1]
            self.last.bias[:out.shape[0]] = out[:, -1]
            # What is new begins as what it looks like, a little less likely: any other row disturbs what is known.
            for character in self.added:
                like = known[model_for(character, known)]
                self.last.weight[self.code_of[character]] = out[like, :-1]
                self.last.bias[self.code_of[character]] = out[like, -1] - LESS_LIKELY

    def forward(self, ink):
        """ink: lines, 1, height, columns; 0 paper, 1 ink -> lines, columns / 3, codes (logarithms of likelihoods)."""
        x = self.pool(torch.tanh(self.conv(1 - 2 * ink)))
        lines, channels, height, columns = x.shape
        x = self.down(x.permute(0, 3, 2, 1).reshape(lines * columns, height, channels))[1][0][0].view(lines, columns, -1)
        x = self.right(x)[0]
        x = self.left(x.flip(1))[0].flip(1)
        return self.last(self.far(x)[0]).log_softmax(2)

    def text(self, values):
        """The likeliest code of each column, repetitions and "nothing" dropped."""
        best = values.argmax(1).tolist()
        return "".join(self.text_of.get(code, "") for index, code in enumerate(best) if code != self.nothing and (index == 0 or code != best[index - 1]))


def write_model(net, start, path, version):
    """Writes `net`, which began from the file `start`, to `path`, without word lists; the size in bytes."""
    parts = read_parts(start)
    old, places = parts[NETWORK], []
    reader = Reader(old)
    read_layers(reader, [], places)
    with torch.no_grad():
        matrices = [torch.cat([net.conv.weight.transpose(2, 3).reshape(net.conv.out_channels, -1), net.conv.bias[:, None]], 1),
                    *gates_of(net.down), *gates_of(net.right), *gates_of(net.left), *gates_of(net.far), torch.cat([net.last.weight, net.last.bias[:, None]], 1)]
    body, at = b"", 0
    for (start_at, end), weights in zip(places, matrices, strict=True):
        body += old[at:start_at] + write_matrix(weights, old[start_at])
        at = end
    names = parts[CHARACTERS].decode().rstrip("\n").split("\n")[1:]
    names += [f"{character} 10 Common {len(names) + index}" for index, character in enumerate(net.added)]
    count, codes = struct.unpack_from("<I", parts[CODES])[0], parts[CODES][4:]
    first = net.last.out_features - len(net.added)
    codes += b"".join(struct.pack("<bii", 1, 1, first + index) for index in range(len(net.added)))
    return write_parts(path, {NETWORK: body + old[at:], CHARACTERS: ("\n".join([str(len(names)), *names]) + "\n").encode(),
                              CODES: struct.pack("<I", count + len(net.added)) + codes, VERSION: version.encode()})
