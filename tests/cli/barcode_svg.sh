# The drawing: bars to scale inside their quiet zone, the same from run to run, replaced as a whole.
echo old >code.svg
paf barcode 30000001 --svg code.svg
paf barcode 30000001 --svg "$PWD/again.svg" >/dev/null && cmp code.svg again.svg
ls -A
python3 - <<'PYTHON'
import xml.etree.ElementTree as tree
root = tree.parse("code.svg").getroot()
space = "{http://www.w3.org/2000/svg}"
print(root.get("width"), root.get("height"), root.get("viewBox"), root.find(space + "title").text)
background, bars = root.findall(space + "g")
print(background.get("fill"), bars.get("fill"), len(bars))
width, height = (float(root.get(side).removesuffix("mm")) for side in ("width", "height"))
page = background[0]
print((float(page.get("width")), float(page.get("height"))) == (width, height))
states = ""
for number, bar in enumerate(bars):
    x, y, w, h = (float(bar.get(name)) for name in ("x", "y", "width", "height"))
    assert abs(x - (6 + number * 25.4 / 23.5)) < 0.0002 and w == 0.5, number
    states += {(2, 5): "0", (2, 3.15): "1", (3.85, 3.15): "2", (3.85, 1.3): "3"}[y, h]
print(states)
print(f"{width - x - w:.3f} {height - 2 - 5:.3f}")
PYTHON
