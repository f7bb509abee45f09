' A run-time error in the middle.
Option Explicit
Dim spectrum
Set spectrum = CreateObject("kvBandscope.kvBandscope")
WScript.Echo "begun"
spectrum.NoSuchMember
WScript.Echo "not reached"
WScript.Quit 42
