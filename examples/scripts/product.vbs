' An intermodulation product with its components: 2 x 462.575 - 462.550 = 462.600 MHz.
Set scope = CreateObject("kvBandscope.kvBandscope")
Set product = CreateObject("kvBandscope.FreqSlot")
product.sKey = "TXIM1"
product.sLabel = "Intermod Product [third order product] 2A-B"
product.dFreq = 462.6                   ' MHz
product.dBW = 48                        ' kHz; a product 2A-B is three times as wide as its transmitters
product.dFreqLo = 462.576               ' MHz; half of the bandwidth on each side of dFreq
product.dFreqHi = 462.624
product.dPwrDBM = -5
product.lColor = RGB(227, 160, 90)
product.nIMComps = 2                    ' set the number of components first
product.nIMComp(0) = 2
product.dIMCompFreq(0) = 462.575
product.sIMCompLabel(0) = "Repeater 16"
product.nIMComp(1) = -1
product.dIMCompFreq(1) = 462.55
product.sIMCompLabel(1) = "Repeater 15"
scope.AddTXChnl product
scope.DisplayMaxPwr = 40                ' dBm; set the top first, because setting the bottom applies the scale
scope.DisplayMinPwr = -20               ' below the product's -5 dBm, so that its box has some height
scope.FreqEndBuffer = 0                 ' MHz
scope.nGridX = 10
scope.DrawByRange 462.51, 462.71        ' MHz
scope.DrawDisplay                       ' draw again, without the cursor line
file = scope.DisplayToBMP(height, width, name)
WScript.Echo "Picture saved as " & file
If file <> "" And product.bDrawn Then WScript.Quit 42
