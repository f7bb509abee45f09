"""The first picture and a product with its components, with comtypes."""

from comtypes.client import CreateObject

scope = CreateObject("kvBandscope.kvBandscope")
channel = CreateObject("kvBandscope.FreqSlot")  # a new object for each channel
channel.sKey = "TX1"
channel.dFreq = 462.55  # MHz
channel.dFreqLo = 462.542  # the edges of the box; without them the box is twice dBW wide
channel.dFreqHi = 462.558
channel.dBW = 16  # kHz
channel.dPwrDBM = 46.99  # dBm
channel.lColor = 0xB4771F  # blue, green, red from left to right
scope.AddTXChnl(channel)

product = CreateObject("kvBandscope.FreqSlot")
product.sKey = "TXIM1"
product.sLabel = "Intermod Product [third order product] 2A-B"
product.dFreq = 462.6
product.dBW = 24  # kHz; the box is twice as wide
product.dPwrDBM = 10
product.lColor = 0x5AA0E3
product.nIMComps = 2  # set the number of components first
for i, (factor, frequency, label) in enumerate([(2, 462.575, "Repeater 16"), (-1, 462.55, "Repeater 15")]):
    product.nIMComp[i] = factor
    product.dIMCompFreq[i] = frequency
    product.sIMCompLabel[i] = label
scope.AddTXChnl(product)

scope.FreqEndBuffer = 0  # MHz; no margin, so that exactly the range below is shown
scope.nGridX = 10
scope.DisplayMaxPwr = 60  # dBm
scope.DrawByRange(462.5, 462.7)  # MHz
scope.DrawDisplay()  # draw again, without the cursor line that DrawByRange draws
height, width, name, file = scope.DisplayToBMP(0.0, 0.0, "")  # the result is the last of the four values
print("Picture saved as", file, "with", width, "x", height, "twips")
