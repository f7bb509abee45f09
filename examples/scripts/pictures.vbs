' One picture for the screen, one for a printed page, and one in vectors.
Set scope = CreateObject("kvBandscope.kvBandscope")
Set view = CreateObject("kvBandscope.View")
Set view.Scope = scope
Set channel = CreateObject("kvBandscope.FreqSlot")
channel.sKey = "TX15"
channel.dFreq = 462.55                  ' MHz
channel.dBW = 8                         ' kHz: the box is twice as wide
channel.dPwrDBM = 47                    ' dBm
channel.lColor = RGB(31, 119, 180)
scope.AddTXChnl channel
scope.DisplayMinPwr = 0
scope.DisplayMaxPwr = 60
view.ShowRange 462.5, 462.6             ' MHz
file = CreateObject("WScript.Shell").ExpandEnvironmentStrings("%TEMP%\spectrum")
view.SavePicture file & ".png"          ' the pixels of the screen
view.SavePicture file & "-page.png", 4200, 2400, 600  ' 7 by 4 inches at 600 dpi
view.SavePicture file & ".emf"          ' vectors, sharp at any size
WScript.Echo "Picture saved as " & file & ".png"
On Error Resume Next
view.SavePicture file & ".jpg"          ' no such format: nothing is written
WScript.Echo Err.Description
If Err.Number = 5 Then WScript.Quit 42  ' 42 means success: after a script error the exit code may be 0
