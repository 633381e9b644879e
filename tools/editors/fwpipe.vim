" SPDX-License-Identifier: MIT
" Vim syntax of fwlib's pipe files. Copy it to ~/.vim/syntax/, and write to ~/.vim/ftdetect/fwpipe.vim:
"   autocmd BufRead,BufNewFile *.pipe setfiletype fwpipe
if exists("b:current_syntax")
  finish
endif
syntax case match
syntax match fwpipeError /^\s*\S\+/
syntax match fwpipeComment /^\s*#.*/
syntax match fwpipeKeyword /^\s*\(sink\|source\)\(\s\|$\)/ nextgroup=fwpipeName skipwhite
syntax match fwpipeKeyword /^\s*element\(\s\|$\)/ nextgroup=fwpipeType skipwhite
syntax match fwpipeKeyword /^\s*\(fwprop\|property\)\(\s\|$\)/ nextgroup=fwpipeKey skipwhite
syntax match fwpipeKeyword /^\s*\(plugin\|pipe\|config\)\(\s\|$\)/ nextgroup=fwpipeFile skipwhite
syntax match fwpipeKeyword /^\s*connect\(\s\|$\)/ nextgroup=fwpipeFrom skipwhite
syntax match fwpipeName /\S\+/ contained
syntax match fwpipeType /\S\+/ contained
syntax match fwpipeKey /\S\+/ contained nextgroup=fwpipeValue skipwhite
syntax match fwpipeValue /\S\+/ contained
syntax match fwpipeFile /\S\+/ contained nextgroup=fwpipeName skipwhite
syntax match fwpipeFrom /\S\+/ contained nextgroup=fwpipePad skipwhite
syntax match fwpipePad /\S\+/ contained nextgroup=fwpipeTo skipwhite
syntax match fwpipeTo /\S\+/ contained nextgroup=fwpipeToPad skipwhite
syntax match fwpipeToPad /\S\+/ contained
highlight default link fwpipeError Error
highlight default link fwpipeComment Comment
highlight default link fwpipeKeyword Statement
highlight default link fwpipeType Type
highlight default link fwpipeKey Identifier
highlight default link fwpipeValue Constant
highlight default link fwpipePad Number
highlight default link fwpipeToPad Number
highlight default link fwpipeFile String
let b:current_syntax = "fwpipe"
